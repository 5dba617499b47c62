#include "platform/store/PropertyList.h"
#include "platform/store/PropertyListForms.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <algorithm>

namespace quillfern::store {

void refusePropertyList(const QString& reason)
{
    throw Failure(QStringLiteral("not a usable property list: ") + reason);
}

void refusePropertyList(const char* reason)
{
    refusePropertyList(QString::fromLatin1(reason));
}

void countPropertyListValue(quint64& values, int depth)
{
    // Settings hold a configuration, that holds stamps, those hold fonts: five levels. The readers call
    // themselves for each level, so this is also how deep they go.
    constexpr int deepest = 32;
    if (depth > deepest) refusePropertyList("it is nested too deeply");
    if (++values > mostPropertyListValues) refusePropertyList("it has too many values");
}

Record readPropertyList(const QByteArray& bytes)
{
    if (bytes.size() > largestPropertyList)
        refusePropertyList(QStringLiteral("it is larger than %1 MB").arg(largestPropertyList >> 20));
    return bytes.startsWith("bplist") ? readBinaryPropertyList(bytes) : readXmlPropertyList(bytes);
}

Record readPropertyListFile(const FilePath& path)
{
    const auto file = readRegularFile(path);
    // The number of bytes read is limited rather than the file's size, since the file may grow meanwhile.
    // It is read in blocks, because a buffer as large as the limit would be taken for the smallest file.
    constexpr qint64 blockSize = 1 << 20;
    QByteArray bytes;
    while (bytes.size() <= largestPropertyList) {
        const QByteArray block = file->read(std::min(blockSize, largestPropertyList + 1 - bytes.size()));
        if (block.isEmpty()) break;
        bytes += block;
    }
    if (file->error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("%1 cannot be read: %2").arg(path.readable(), file->errorString()));
    return readPropertyList(bytes);
}

} // namespace quillfern::store
