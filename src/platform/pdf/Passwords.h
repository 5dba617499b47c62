#pragma once

#include "platform/system/Failure.h"

#include <QString>
#include <QStringList>

namespace quillfern::pdf {

/// The passwords to try on a document, in this order; the empty one, with which many restricted documents
/// open, comes last. A password that is not ASCII is tried in the encodings that programs have used.
struct Passwords
{
    QStringList texts;
    /// The document's encryption is to be removed: only the password for permissions (the owner's, ISO
    /// 32000-1, 7.6.3) allows that, so that one is preferred to a password that merely opens the document.
    bool mustUnlock = false;

    [[nodiscard]] bool isEmpty() const { return texts.join(QString()).isEmpty(); }
};

/// A document that none of the passwords opens.
class LockedDocument final : public Failure
{
  public:
    using Failure::Failure;
};

} // namespace quillfern::pdf
