// Reads the includes of every source file: a room may include only itself and the rooms below it, and the
// headers of a library other than Qt and the standard library only where the library belongs.

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The rooms right below each room; what those may include is allowed as well.
const QMap<QString, QStringList>& roomsBelow()
{
    static const QMap<QString, QStringList> below = [] {
        const std::vector<std::pair<const char*, const char*>> rows = {
            {"platform/system", ""},
            {"platform/store", "platform/system"},
            {"platform/drawing", "platform/system"},
            {"platform/desktop", "platform/system"},
            {"platform/pdf", "platform/store platform/drawing"},
            {"platform/raster", "platform/store platform/drawing"},
            {"platform/pageimages", "platform/system"},
            {"stamps", "platform/raster"},
            {"filelist", "platform/pdf platform/raster platform/desktop"},
            {"config", "stamps platform/pageimages"},
            {"batch", "config filelist"},
            {"dialogs", "config filelist"},
            {"app", "dialogs batch"},
            {"runner", "batch"},
            {"render", "platform/pageimages platform/pdf platform/raster"},
        };
        QMap<QString, QStringList> map;
        for (const auto& [room, rooms] : rows)
            map.insert(QString::fromLatin1(room), QString::fromLatin1(rooms).split(u' ', Qt::SkipEmptyParts));
        return map;
    }();
    return below;
}

/// Libraries by what their headers begin with, and the one room that may include them ("platform/" for those
/// of several rooms). `unistd.h` and the
/// like are the operating system's: of the platform, the batch (which asks it about folders) and programs of
/// one file.
const std::vector<std::pair<const char*, const char*>> libraries = {
    {"qpdf/", "platform/pdf"},           {"hb", "platform/pdf"},
    {"libdeflate.h", "platform/"},       {"zlib.h", "platform/pdf"},
    {"tiff", "platform/raster"},         {"turbojpeg.h", "platform/raster"},
    {"jpeglib.h", "platform/raster"},    {"jerror.h", "platform/raster"},
    {"png.h", "platform/raster"},        {"lcms2.h", "platform/raster"},
    {"fontconfig/", "platform/drawing"}, {"nettle/", "platform/store"},
};

QSet<QString> reachable(const QString& room)
{
    QSet<QString> rooms = {room};
    for (const QString& next : roomsBelow().value(room))
        rooms.unite(reachable(next));
    return rooms;
}

/// The room that a path below src/ lies in; empty for none.
QString roomOf(const QString& path)
{
    const int parts = path.startsWith("platform/"_L1) ? 1 : 0;
    const QString room = path.section(u'/', 0, parts);
    return roomsBelow().contains(room) ? room : QString();
}

struct Include
{
    QString file;
    QString target;
};

/// The texts of all sources, by their names below src/.
const QMap<QString, QString>& allSources()
{
    static const QMap<QString, QString> all = [] {
        QMap<QString, QString> sources;
        const QString root = qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + u"/src/"_s;
        QDirIterator files(root, {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            sources.insert(file.fileName().mid(root.size()), QString::fromUtf8(file.readAll()));
        }
        return sources;
    }();
    return all;
}

const QList<Include>& allIncludes()
{
    static const QList<Include> all = [] {
        static const QRegularExpression line(u"^\\s*#\\s*include\\s*[\"<]([^\">]+)[\">]"_s,
                                             QRegularExpression::MultilineOption);
        QList<Include> includes;
        for (auto source = allSources().begin(); source != allSources().end(); ++source)
            for (const auto& match : line.globalMatch(source.value()))
                includes.append({source.key(), match.captured(1)});
        return includes;
    }();
    return all;
}

std::string describe(const Include& include)
{
    return (include.file + u" includes "_s + include.target).toStdString();
}

/// Qt's headers begin with Q, the standard library's have no folder and no extension; a form's header is made
/// from it.
bool isQtOrStandard(const QString& header)
{
    static const QRegularExpression plain(
        u"^(Q[A-Za-z0-9]+(/Q[A-Za-z0-9]+)?|[a-z_]+|ui_[A-Za-z]+\\.h|[A-Za-z]+\\.moc)$"_s);
    return plain.match(header).hasMatch();
}

bool isOperatingSystem(const QString& header)
{
    static const QRegularExpression posix(
        u"^(unistd|fcntl|signal|dirent|poll|(sys|linux)/[a-z]+|malloc|emmintrin)\\.h$"_s);
    return posix.match(header).hasMatch();
}

TEST(Layers, EverySourceFileIsInARoom)
{
    ASSERT_GT(allIncludes().size(), 500) << "the sources were not found";
    for (const Include& include : allIncludes())
        EXPECT_FALSE(roomOf(include.file).isEmpty()) << include.file.toStdString();
}

TEST(Layers, NoIncludeRunsUpwardOrSideways)
{
    for (const Include& include : allIncludes()) {
        const QString target = roomOf(include.target);
        if (target.isEmpty()) continue;
        EXPECT_TRUE(reachable(roomOf(include.file)).contains(target)) << describe(include);
    }
}

TEST(Layers, ALibraryIsIncludedInItsRoomOnly)
{
    for (const Include& include : allIncludes()) {
        if (!roomOf(include.target).isEmpty() || isQtOrStandard(include.target)) continue;
        const QString room = roomOf(include.file);
        if (isOperatingSystem(include.target)) {
            static const QSet<QString> windows = {u"app"_s, u"dialogs"_s, u"config"_s, u"stamps"_s};
            EXPECT_FALSE(windows.contains(room)) << describe(include);
            continue;
        }
        const auto library = std::find_if(libraries.begin(), libraries.end(), [&](const auto& each) {
            return include.target.startsWith(QLatin1String(each.first));
        });
        ASSERT_NE(library, libraries.end()) << describe(include) << ", which belongs to no room";
        const QLatin1String allowed(library->second);
        EXPECT_TRUE(allowed.endsWith(u'/') ? room.startsWith(allowed) : room == allowed) << describe(include);
    }
}

// Qt's classes for files by name lose names that are not UTF-8. FilePath and what takes one do not.
TEST(Layers, FilesAreReachedByTheirPathsOnly)
{
    static const QSet<QString> allowed = {
        u"platform/system/FileAccess.cpp"_s, // a QFile over a descriptor
        u"dialogs/ThemedIcon.cpp"_s,         // resources inside the program
        u"dialogs/WidgetPanels.cpp"_s,       // a filter of the toolkit's dialog
    };
    static const QRegularExpression comment(u"//[^\n]*"_s);
    static const QRegularExpression byName(
        u"\\b(QFile|QFileInfo|QDir|QDirIterator|QSaveFile|QTemporaryFile|QLockFile)\\b"_s);
    QSet<QString> found;
    for (auto source = allSources().begin(); source != allSources().end(); ++source) {
        const auto match = byName.match(QString(source.value()).remove(comment));
        if (!match.hasMatch()) continue;
        found.insert(source.key());
        EXPECT_TRUE(allowed.contains(source.key()))
            << source.key().toStdString() << " uses " << match.captured().toStdString();
    }
    EXPECT_EQ(found, allowed) << "what needs no exception has none";
}

TEST(Layers, CoreKnowsNoWidgets)
{
    static const QSet<QString> windowed = {u"app"_s, u"dialogs"_s};
    static const QRegularExpression widgets(
        u"^(QtWidgets/.*|Q\\w*(Widget|Dialog|Window|MessageBox|View))$"_s);
    for (const Include& include : allIncludes()) {
        if (windowed.contains(roomOf(include.file)) || include.target == "QStringView"_L1) continue;
        EXPECT_FALSE(widgets.match(include.target).hasMatch()) << describe(include);
    }
}

} // namespace
