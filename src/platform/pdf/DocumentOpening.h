#pragma once

#include "platform/pdf/DocumentPointer.h"
#include "platform/pdf/FileInput.h"
#include "platform/pdf/Passwords.h"
#include "platform/pdf/PlainStreams.h"
#include "platform/pdf/ReadAhead.h"
#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"

#include <memory>
#include <optional>
#include <qpdf/QPDFObjectHandle.hh>
#include <stop_token>
#include <vector>

namespace quillfern::pdf {

/// A document with its page tree in order.
struct OpenedDocument
{
    std::shared_ptr<FileInput> input;
    DocumentPointer qpdf;
    std::unique_ptr<PlainStreams> plain;
    std::vector<QPDFObjectHandle> pages; ///< each an indirect dictionary, and each another one
    /// What of a damaged file could not be had, in words for people; nothing when all is there.
    std::optional<Reason> loss;
    /// The file is as the format asks for, as far as it was read; the rest is not read yet. False when
    /// everything was read, and put right where that was possible.
    bool isSound = false;
    bool isReadWhole = true; ///< every object is read, so that all references are known
};

/// Opens a file that needs no password to be read, or one of these. qpdf drops an object that it cannot read
/// and goes on; here such objects, a lost trailer or catalogue and a page tree that is none are put right
/// first. Throws LockedDocument when no password opens the file, Failure when it is no document, or when a
/// page that is in the file, or its content, cannot be read; Cancelled once `stop` is stopped.
[[nodiscard]] OpenedDocument openDocument(const FilePath& path, const std::stop_token& stop = {},
                                          ReadAhead readAhead = ReadAhead::Pages,
                                          const Passwords& passwords = {});

/// Reads what is left of a sound file. Throws Failure when something of it cannot be read.
void readEverything(OpenedDocument& document);

} // namespace quillfern::pdf
