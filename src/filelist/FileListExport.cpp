#include "filelist/FileListExport.h"

#include "platform/store/AtomicFile.h"
#include "platform/system/DateText.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Guarded.h"
#include "platform/system/NativePath.h"

namespace quillfern {

namespace {

QString dateField(const QDateTime& moment)
{
    if (!moment.isValid()) return QStringLiteral("(null)");
    return dateText(moment, QStringLiteral("yyyy-MM-dd HH:mm:ss +0000"), QLocale::c());
}

QString line(const FileItem& item)
{
    const FileTimes times = fileTimes(item.filePath());
    const QStringList fields = {readableName(item.name()), QString::number(item.pages()),
                                item.sizeInKB(),           readableName(item.type()),
                                dateField(times.modified), dateField(times.accessed),
                                dateField(times.created),  readableName(item.location())};
    return fields.join(u'\t') + u'\n';
}

} // namespace

QByteArray exportedList(const FileList& files)
{
    QByteArray text = "Name\tPages\tSize\tType\tModified Date\tAccessed Date\tCreated Date\tLocation\n";
    for (int row = 0; row < files.count(); ++row)
        text += line(files.at(row)).toUtf8();
    return text;
}

bool exportList(const FileList& files, const FilePath& path)
{
    return guarded("Error in (export) : %@", false, [&] {
        store::AtomicFile::writeWhole(path, exportedList(files));
        return true;
    });
}

QString exportFileName(const Clock& clock)
{
    return QStringLiteral("Export %1.txt")
        .arg(getStringFromDateFormat(QStringLiteral("dd-MMM-yyyy hh-mm-ss a"), clock));
}

} // namespace quillfern
