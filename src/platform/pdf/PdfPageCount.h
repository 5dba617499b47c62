#pragma once

#include "platform/pdf/Passwords.h"
#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <optional>
#include <stop_token>

namespace quillfern::pdf {

/// The number of pages of a PDF file, from its trailer and page tree alone; 0 when the file cannot be read,
/// needs a password and none of these opens it, or is no PDF file. Throws Cancelled once `stop` is stopped.
[[nodiscard]] int pdfPageCount(const FilePath& path, const std::stop_token& stop = {},
                               const Passwords& passwords = {});

/// Why a PDF file has no usable pages, in words for people; nothing when it has some. Throws Cancelled once
/// `stop` is stopped.
[[nodiscard]] std::optional<Reason> pdfProblem(const FilePath& path, const std::stop_token& stop = {},
                                               const Passwords& passwords = {});

/// True when a PDF document opens from `path` and either is not encrypted or opens with `password`.
[[nodiscard]] bool pdfOpensWith(const FilePath& path, const QString& password);

} // namespace quillfern::pdf
