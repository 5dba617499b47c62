// The built manual has what a reader needs, and the runner has what the manual says of it.

#include "support/Tools.h"

#include <QRegularExpression>
#include <QSet>

namespace quillfern {
namespace {

QString manual()
{
    return qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/../share/quillfern/MACQuillfern1.pdf"_s;
}

QString wholeText()
{
    const ToolResult result = runTool("pdftotext -layout", {manual(), u"-"_s});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    return QString::fromUtf8(result.out);
}

QSet<QString> optionsIn(const QString& text)
{
    static const QRegularExpression option(u"--[a-z][a-z-]*[a-z](?!-)"_s);
    QSet<QString> found;
    for (auto match = option.globalMatch(text); match.hasNext();)
        found.insert(match.next().captured());
    return found;
}

/// The headings of the sources, which are the titles of the bookmarks.
QStringList headings(const QString& level)
{
    const QString source = QString::fromUtf8(
        readFile(qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + u"/docs/help/manual.html"_s));
    const QRegularExpression heading(u"<%1[^>]*>([^<]+)</%1>"_s.arg(level));
    QStringList found;
    for (auto match = heading.globalMatch(source); match.hasNext();)
        found << match.next().captured(1);
    return found;
}

TEST(Manual, IsADocumentOfADozenPagesThatOthersAccept)
{
    EXPECT_TRUE(qpdfAccepts(manual()));
    EXPECT_GE(pdfWords(manual()).size(), 12U);
}

TEST(Manual, HasEveryChapterAmongItsBookmarksAndOnItsPages)
{
    const ToolResult json = runTool("qpdf --json=1 --json-key=outlines", {manual()});
    ASSERT_EQ(json.exitCode, 0) << json.err.constData();
    const QString outline = QString::fromUtf8(json.out);
    const QString text = wholeText();
    const QStringList chapters = headings(u"h1"_s);
    ASSERT_GE(chapters.size(), 10);
    for (const QString& title : chapters + headings(u"h2"_s)) {
        EXPECT_TRUE(outline.contains(title)) << qPrintable(title);
        EXPECT_TRUE(text.contains(title)) << qPrintable(title);
    }
}

TEST(Manual, CarriesItsFonts)
{
    const ToolResult fonts = runTool("pdffonts", {manual()});
    ASSERT_EQ(fonts.exitCode, 0);
    const QStringList lines = QString::fromUtf8(fonts.out).split(u'\n', Qt::SkipEmptyParts).mid(2);
    ASSERT_FALSE(lines.isEmpty());
    static const QRegularExpression embedded(u"\\s(yes|no)\\s+(yes|no)\\s+(yes|no)\\s+\\d+\\s+\\d+$"_s);
    for (const QString& line : lines)
        EXPECT_EQ(embedded.match(line).captured(1), u"yes"_s) << qPrintable(line);
}

TEST(Manual, NamesOnlyOptionsThatTheRunnerHas)
{
    const ToolResult help =
        runTool(qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern-run"_s, {u"--help"_s});
    const QSet<QString> named = optionsIn(wholeText());
    ASSERT_GE(named.size(), 20);
    EXPECT_EQ(named - optionsIn(QString::fromUtf8(help.out)), QSet<QString>());
}

} // namespace
} // namespace quillfern
