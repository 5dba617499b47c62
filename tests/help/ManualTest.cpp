// The built manual has what a reader needs, and the runner has what the manual says of it.

#include "support/Tools.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

QString manual()
{
    return qEnvironmentVariable("QUILLFERN_BIN_DIR") +
           QStringLiteral("/../share/quillfern/MACQuillfern1.pdf");
}

QString wholeText()
{
    const ToolResult result =
        runTool(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), manual(), QStringLiteral("-")});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    return QString::fromUtf8(result.out);
}

QSet<QString> optionsIn(const QString& text)
{
    static const QRegularExpression option(QStringLiteral("--[a-z][a-z-]+"));
    QSet<QString> found;
    for (auto match = option.globalMatch(text); match.hasNext();)
        found.insert(match.next().captured());
    return found;
}

/// The headings of the sources, which are the titles of the bookmarks.
QStringList headings(const QString& level)
{
    const QString source = QString::fromUtf8(
        readFile(qEnvironmentVariable("QUILLFERN_SOURCE_DIR") + QStringLiteral("/docs/help/manual.html")));
    const QRegularExpression heading(QStringLiteral("<%1[^>]*>([^<]+)</%1>").arg(level));
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
    const ToolResult json =
        runTool(QStringLiteral("qpdf"),
                {QStringLiteral("--json=1"), QStringLiteral("--json-key=outlines"), manual()});
    ASSERT_EQ(json.exitCode, 0) << json.err.constData();
    const QString outline = QString::fromUtf8(json.out);
    const QString text = wholeText();
    const QStringList chapters = headings(QStringLiteral("h1"));
    ASSERT_GE(chapters.size(), 10);
    for (const QString& title : chapters + headings(QStringLiteral("h2"))) {
        EXPECT_TRUE(outline.contains(title)) << qPrintable(title);
        EXPECT_TRUE(text.contains(title)) << qPrintable(title);
    }
}

TEST(Manual, CarriesItsFonts)
{
    const ToolResult fonts = runTool(QStringLiteral("pdffonts"), {manual()});
    ASSERT_EQ(fonts.exitCode, 0);
    const QStringList lines =
        QString::fromUtf8(fonts.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(2);
    ASSERT_FALSE(lines.isEmpty());
    static const QRegularExpression embedded(
        QStringLiteral("\\s(yes|no)\\s+(yes|no)\\s+(yes|no)\\s+\\d+\\s+\\d+$"));
    for (const QString& line : lines)
        EXPECT_EQ(embedded.match(line).captured(1), QStringLiteral("yes")) << qPrintable(line);
}

TEST(Manual, NamesOnlyOptionsThatTheRunnerHas)
{
    const ToolResult help =
        runTool(qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-run"),
                {QStringLiteral("--help")});
    const QSet<QString> named = optionsIn(wholeText());
    ASSERT_GE(named.size(), 20);
    EXPECT_EQ(named - optionsIn(QString::fromUtf8(help.out)), QSet<QString>());
}

} // namespace
} // namespace quillfern
