#include "filelist/IncludeSubfolders.h"

#include "platform/system/Guarded.h"

namespace quillfern {

namespace {

QString key()
{
    return QStringLiteral("INCLUDESUBFOLDERS");
}

} // namespace

bool IncludeSubfolders::inculdeSubfolders() const
{
    store::Record record; // reads any kind of number as a boolean
    if (auto value = store_.value(key())) record.set(key(), std::move(*value));
    return record.boolean(key());
}

void IncludeSubfolders::setInculdeSubfolders(bool include)
{
    guarded("Error in (setInculdeSubfolders:) : %@", [&] {
        store_.setValue(key(), include);
        store_.flush();
    });
}

} // namespace quillfern
