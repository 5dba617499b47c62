#include "config/JobOptions.h"

#include <array>
#include <utility>

namespace quillfern {

namespace {

// The names in every stored form. They are not to change.
const QString pageListKey = QStringLiteral("pageList");
const QString existingKey = QStringLiteral("existing");
const QString namePatternKey = QStringLiteral("namePattern");

constexpr std::array<std::pair<const char*, bool JobOptions::*>, 10> switches = {{
    {"checkedOnly", &JobOptions::checkedOnly},
    {"keepOtherPages", &JobOptions::keepOtherPages},
    {"realSize", &JobOptions::realSize},
    {"visiblePage", &JobOptions::visiblePage},
    {"usePasswords", &JobOptions::usePasswords},
    {"unlock", &JobOptions::unlock},
    {"keepFolders", &JobOptions::keepFolders},
    {"tifNames", &JobOptions::tifNames},
    {"replaceStamps", &JobOptions::replaceStamps},
    {"index", &JobOptions::index},
}};

} // namespace

JobOptions JobOptions::read(const store::Record& record)
{
    JobOptions options;
    for (const auto& [key, field] : switches)
        options.*field = record.boolean(QString::fromLatin1(key));
    options.pageList = PageList::fromStored(record.text(pageListKey).value_or(QString()));
    options.existing = ExistingCopies{record.integer32(existingKey)};
    options.namePattern = record.text(namePatternKey).value_or(QString());
    return options;
}

void JobOptions::addTo(store::RecordBuilder& builder) const
{
    for (const auto& [key, field] : switches)
        if (this->*field) builder.add(QString::fromLatin1(key), true);
    if (!pageList.isEmpty()) builder.add(pageListKey, pageList.text());
    if (existing != ExistingCopies::Replace) builder.add(existingKey, qToUnderlying(existing));
    if (!namePattern.isEmpty()) builder.add(namePatternKey, namePattern);
}

} // namespace quillfern
