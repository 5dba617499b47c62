#pragma once

#include "platform/pdf/PageArea.h"
#include "platform/pdf/Passwords.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

namespace quillfern::pdf {

/// One page of a document as a document of its own.
struct ExtractedPage
{
    QByteArray document; ///< a PDF file with this page alone, not encrypted
    QSizeF size;         ///< as its reader sees it, in points: turned by /Rotate and scaled by /UserUnit
};

/// Takes page `index` (from 0) out of a file that needs no password, or one of these. The page shows its
/// area, as a stamped page does, and its annotations and form fields have become part of its content. Only
/// what the page needs is read, wherever in the file it stands. Throws Failure when the file cannot be read
/// or has no such page.
[[nodiscard]] ExtractedPage extractPdfPage(const FilePath& path, int index, PageArea area = PageArea::Whole,
                                           const Passwords& passwords = {});

} // namespace quillfern::pdf
