#pragma once

#include "platform/pdf/DocumentPointer.h"
#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"

#include <optional>
#include <qpdf/QPDFObjectHandle.hh>
#include <stop_token>
#include <vector>

namespace quillfern::pdf {

/// A document with every object read and its page tree in order.
struct OpenedDocument
{
    DocumentPointer qpdf;
    std::vector<QPDFObjectHandle> pages; ///< each an indirect dictionary, and each another one
    /// What of a damaged file could not be had, in words for people; nothing when all is there.
    std::optional<Reason> loss;
};

/// Opens a file that needs no password to be read. qpdf drops an object that it cannot read and goes on;
/// here such objects, a lost trailer or catalogue and a page tree that is none are put right first. Throws
/// Failure when the file is no document, needs a password, or when a page that is in the file, or its
/// content, cannot be read; Cancelled once `stop` is stopped.
[[nodiscard]] OpenedDocument openDocument(const FilePath& path, const std::stop_token& stop = {});

} // namespace quillfern::pdf
