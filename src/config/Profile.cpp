#include "config/Profile.h"

#include "config/Numbering.h"
#include "platform/store/AtomicFile.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"

namespace quillfern {

void saveProfile(const Numbering& number, const FilePath& path)
{
    const auto record = number.getData();
    if (!record) throw Failure(QStringLiteral("the configuration cannot be saved"));
    store::AtomicFile::writeWhole(path, store::writePropertyList(*record));
}

void loadProfile(Numbering& number, const FilePath& path)
{
    const store::Record record = store::readPropertyListFile(path);
    // Applying such a record would remove all stamps and set every number to zero.
    if (!Numbering::isConfiguration(record)) throw Failure(QStringLiteral("the file holds no configuration"));
    if (!number.setData(&record)) throw Failure(QStringLiteral("the profile cannot be applied"));
    number.fillAbsentValues();
}

} // namespace quillfern
