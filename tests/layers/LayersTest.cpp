// Reads the includes of every source file: a floor may include only itself and the floors below it, and
// headers of libraries other than Qt and the standard library belong to the adapters alone.

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

const QMap<QString, QStringList> below = {
    {QStringLiteral("platform"), {}},
    {QStringLiteral("stamps"), {QStringLiteral("platform")}},
    {QStringLiteral("filelist"), {QStringLiteral("platform")}},
    {QStringLiteral("config"), {QStringLiteral("stamps")}},
    {QStringLiteral("batch"), {QStringLiteral("config"), QStringLiteral("filelist")}},
    {QStringLiteral("dialogs"), {QStringLiteral("config"), QStringLiteral("filelist")}},
    {QStringLiteral("app"), {QStringLiteral("dialogs"), QStringLiteral("batch")}},
    {QStringLiteral("runner"), {QStringLiteral("batch")}},
    {QStringLiteral("render"), {QStringLiteral("platform")}},
};

void reach(const QString& room, QSet<QString>& rooms)
{
    rooms.insert(room);
    for (const QString& next : below.value(room))
        reach(next, rooms);
}

struct Include
{
    QString file;
    QString room;
    QString target;
    bool quoted;
};

/// The texts of all sources, by their names below src/.
QMap<QString, QString> allSources()
{
    QMap<QString, QString> sources;
    const QString root = qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + QStringLiteral("/src/");
    QDirIterator files(root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        sources.insert(file.fileName().mid(root.size()), QString::fromUtf8(file.readAll()));
    }
    return sources;
}

QList<Include> allIncludes()
{
    static const QRegularExpression line(QStringLiteral("^\\s*#\\s*include\\s*([\"<])([^\">]+)[\">]"),
                                         QRegularExpression::MultilineOption);
    QList<Include> includes;
    const QMap<QString, QString> sources = allSources();
    for (auto source = sources.begin(); source != sources.end(); ++source)
        for (const auto& match : line.globalMatch(source.value()))
            includes.append({source.key(), source.key().section(u'/', 0, 0), match.captured(2),
                             match.captured(1) == QLatin1String("\"")});
    return includes;
}

/// Qt's headers begin with Q, the standard library's have no folder and no extension; the system's own are
/// few.
bool isQtOrStandard(const QString& header)
{
    static const QRegularExpression plain(QStringLiteral("^(Q[A-Za-z]+(/Q[A-Za-z]+)?|[a-z_]+)$"));
    static const QSet<QString> system = {QStringLiteral("unistd.h"), QStringLiteral("fcntl.h"),
                                         QStringLiteral("signal.h"), QStringLiteral("sys/resource.h")};
    return plain.match(header).hasMatch() || system.contains(header);
}

TEST(Layers, NoIncludeRunsUpwardOrSideways)
{
    const QList<Include> includes = allIncludes();
    ASSERT_GT(includes.size(), 100) << "the sources were not found";
    for (const Include& include : includes) {
        const QString target = include.target.section(u'/', 0, 0);
        if (!include.quoted || !below.contains(target)) continue;
        QSet<QString> rooms;
        reach(include.room, rooms);
        EXPECT_TRUE(rooms.contains(target))
            << include.file.toStdString() << " includes " << include.target.toStdString();
    }
}

TEST(Layers, OnlyAdaptersIncludeOtherLibraries)
{
    for (const Include& include : allIncludes()) {
        if (include.quoted || include.room == QLatin1String("platform")) continue;
        EXPECT_TRUE(isQtOrStandard(include.target))
            << include.file.toStdString() << " includes " << include.target.toStdString();
    }
}

TEST(Layers, CoreKnowsNoWidgets)
{
    static const QSet<QString> windowed = {QStringLiteral("app"), QStringLiteral("dialogs")};
    static const QRegularExpression widgets(
        QStringLiteral("^(QtWidgets/.*|Q\\w*(Widget|Dialog|Window|MessageBox|View))$"));
    for (const Include& include : allIncludes()) {
        if (windowed.contains(include.room) || include.quoted ||
            include.target == QLatin1String("QStringView"))
            continue;
        EXPECT_FALSE(widgets.match(include.target).hasMatch())
            << include.file.toStdString() << " includes " << include.target.toStdString();
    }
}

// Qt's classes for files by name lose names that are not UTF-8. FilePath and what takes one do not.
TEST(Layers, FilesAreReachedByTheirPathsOnly)
{
    static const QSet<QString> allowed = {
        QStringLiteral("platform/system/FileAccess.cpp"), // a QFile over a descriptor
        QStringLiteral("dialogs/ThemedIcon.cpp"),         // resources inside the program
        QStringLiteral("dialogs/WidgetPanels.cpp"),       // a filter of the toolkit's dialog
    };
    static const QRegularExpression comment(QStringLiteral("//[^\n]*"));
    static const QRegularExpression byName(
        QStringLiteral("\\b(QFile|QFileInfo|QDir|QDirIterator|QSaveFile|QTemporaryFile|QLockFile)\\b"));
    QSet<QString> found;
    const QMap<QString, QString> sources = allSources();
    for (auto source = sources.begin(); source != sources.end(); ++source) {
        const auto match = byName.match(QString(source.value()).remove(comment));
        if (!match.hasMatch()) continue;
        found.insert(source.key());
        EXPECT_TRUE(allowed.contains(source.key()))
            << source.key().toStdString() << " uses " << match.captured().toStdString();
    }
    EXPECT_EQ(found, allowed) << "what needs no exception has none";
}

} // namespace
