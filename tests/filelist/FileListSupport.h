#pragma once

#include "filelist/FileList.h"
#include "platform/system/NativePath.h"
#include "support/Tools.h"

namespace quillfern {

inline FileItem itemAt(const QString& path)
{
    auto item = FileItem::initWithURL(asPath(path));
    EXPECT_TRUE(item.has_value()) << path.toStdString();
    item->setPdfOpenPassword(QString());
    return *item;
}

/// Items of files that do not exist, for tests of the order.
inline std::vector<FileItem> itemsNamed(const QStringList& names)
{
    std::vector<FileItem> items;
    for (const QString& name : names)
        items.push_back(itemAt(u"/nowhere/"_s + name));
    return items;
}

inline QStringList namesOf(const FileList& files)
{
    QStringList names;
    for (int row = 0; row < files.count(); ++row)
        names.append(files.at(row).name());
    return names;
}

} // namespace quillfern
