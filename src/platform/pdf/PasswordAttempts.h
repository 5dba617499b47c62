#pragma once

#include "platform/pdf/Passwords.h"

#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <string>
#include <vector>

namespace quillfern::pdf {

/// The passwords as bytes, in the order in which to try them, each once; the empty one last.
[[nodiscard]] std::vector<std::string> passwordBytes(const Passwords& passwords);

/// Throws LockedDocument.
[[noreturn]] void refuseLocked(const Passwords& passwords);

/// What `open`, called with one password after the other, returns for the first that fits; where the
/// document is to be unlocked, for the first that permits this, if there is one. `documentOf` gives the QPDF
/// of what `open` returns. Throws LockedDocument when no password fits.
template <class Open, class DocumentOf>
auto withPassword(const Passwords& passwords, Open open, DocumentOf documentOf)
{
    using Opened = decltype(open(std::string()));
    std::optional<Opened> fitting;
    for (const std::string& password : passwordBytes(passwords)) {
        try {
            Opened opened = open(password);
            QPDF& document = documentOf(opened);
            const bool suffices =
                !passwords.mustUnlock || !document.isEncrypted() || document.ownerPasswordMatched();
            if (suffices) return opened;
            if (!fitting) fitting = std::move(opened);
        } catch (const QPDFExc& exception) {
            if (exception.getErrorCode() != qpdf_e_password) throw;
        }
    }
    if (!fitting) refuseLocked(passwords);
    return std::move(*fitting);
}

} // namespace quillfern::pdf
