#include "platform/pdf/PasswordAttempts.h"

#include <algorithm>
#include <qpdf/QUtil.hh>

namespace quillfern::pdf {

std::vector<std::string> passwordBytes(const Passwords& passwords)
{
    std::vector<std::string> result;
    const auto add = [&](const std::string& bytes) {
        if (std::find(result.begin(), result.end(), bytes) == result.end()) result.push_back(bytes);
    };
    for (const QString& text : passwords.texts) {
        if (text.isEmpty()) continue;
        const std::string utf8 = text.toStdString();
        add(utf8);
        // The standard asks for PDFDocEncoding up to revision 4 and for UTF-8 from then on; programs have
        // used others, too.
        for (const std::string& other : QUtil::possible_repaired_encodings(utf8))
            add(other);
    }
    result.emplace_back();
    return result;
}

void refuseLocked(const Passwords& passwords)
{
    if (passwords.isEmpty())
        throw LockedDocument(QT_TRANSLATE_NOOP("quillfern::Failure", "The document needs a password."));
    throw LockedDocument(
        QT_TRANSLATE_NOOP("quillfern::Failure", "The document needs another password than the one given."));
}

} // namespace quillfern::pdf
