#pragma once

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

/// Takes page `index` (from 0) out of a file that needs no password. The page shows its whole media box, as a
/// stamped page does, and its annotations and form fields have become part of its content. Only what the page
/// needs is read, wherever in the file it stands. Throws Failure when the file cannot be read or has no such
/// page.
[[nodiscard]] ExtractedPage extractPdfPage(const FilePath& path, int index);

} // namespace quillfern::pdf
