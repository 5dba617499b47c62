#include "filelist/FolderWalk.h"

#include "filelist/AllowedFileTypes.h"

#include <QSet>
#include <algorithm>

namespace quillfern {

namespace {

/// Applications, their parts, and documents that the system stores as folders but people see as one file.
bool isPackage(const QString& folderName)
{
    static const QSet<QString> suffixes = [] {
        const QStringList list =
            QStringLiteral("app appex bundle component framework kext mdimporter plugin prefpane qlgenerator "
                           "saver wdgt xpc pkg mpkg dsym scptd workflow xcodeproj playground rtfd pages "
                           "numbers key photoslibrary aplibrary")
                .split(u' ');
        return QSet<QString>(list.begin(), list.end());
    }();
    return suffixes.contains(FilePath::extensionOf(folderName).toLower());
}

} // namespace

std::vector<QString> FolderWalk::sorted(std::vector<QString> names) const
{
    struct Named
    {
        QCollatorSortKey key;
        QString name;
    };
    std::vector<Named> keyed;
    keyed.reserve(names.size());
    for (QString& name : names) {
        if (!goOn_()) return {};
        keyed.push_back({order_.key(name), std::move(name)});
    }
    // The file system returns names in any order. Names that NameOrder takes for equal are compared by their
    // characters, so that the same folder always gives the same list.
    std::sort(keyed.begin(), keyed.end(), [](const Named& a, const Named& b) {
        const int compared = a.key.compare(b.key);
        return compared != 0 ? compared < 0 : a.name < b.name;
    });
    names.clear();
    for (Named& named : keyed)
        names.push_back(std::move(named.name));
    return names;
}

void FolderWalk::walk(const FilePath& folder, bool includeSubfolders)
{
    std::vector<QString> files;
    std::vector<QString> folders;
    for (FolderEntry& entry : folderEntries(folder, goOn_)) {
        if (entry.name.startsWith(u'.')) continue;
        if (entry.isFile && hasAllowedType(entry.name)) files.push_back(std::move(entry.name));
        if (includeSubfolders && entry.isFolder && !isPackage(entry.name))
            folders.push_back(std::move(entry.name));
    }
    for (const QString& name : sorted(std::move(files))) {
        if (!goOn_()) return;
        visit_(folder.child(name));
    }
    // The system names no path longer than a few thousand bytes, which bounds the depth.
    for (const QString& name : sorted(std::move(folders))) {
        if (!goOn_()) return;
        walk(folder.child(name), true);
    }
}

} // namespace quillfern
