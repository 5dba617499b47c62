#include "filelist/NameOrder.h"

namespace quillfern {

namespace {

QLocale languageToSortBy()
{
    const QLocale users;
    // The C locale compares bytes, without regard to letter case and the values of digits.
    return users.language() == QLocale::C ? QLocale(QLocale::English) : users;
}

} // namespace

NameOrder::NameOrder() : collator_(languageToSortBy())
{
    collator_.setNumericMode(true);
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
}

} // namespace quillfern
