#include "platform/system/NativePath.h"

#include <gtest/gtest.h>

namespace quillfern {
namespace {

const std::vector<QByteArray>& oddPaths()
{
    static const std::vector<QByteArray> paths = {
        "/plain/a.pdf",
        "/with blank/100%25 a?b#c&d;e.pdf",
        "/line\nbreak\tand\x01"
        "control.pdf",
        "/\xC3\xA9t\xC3\xA9/\xE6\xBC\xA2.pdf",
        "/\xF0\x9F\x93\x84.pdf",      // beyond the basic plane: a surrogate pair in the text
        "/latin\xE9.pdf",             // not UTF-8
        "/\xFF\xFE\x80.pdf",          // never in UTF-8
        "/cut\xE6\xBC.pdf",           // ends within a character
        "/\xC0\xAFoverlong.pdf",      // a slash in two bytes must not become one
        "/\xED\xB2\x80surrogate.pdf", // a surrogate in three bytes
        "/\xF0\x9F\x93\x84\xFF.pdf",  // an escape right after a pair
        "//double/slash.pdf",
        "/back\\slash.pdf",
    };
    return paths;
}

TEST(NativePath, EveryNameComesBackByteForByte)
{
    for (const QByteArray& bytes : oddPaths()) {
        const QString text = pathText(bytes);
        EXPECT_EQ(nativePath(text), bytes) << bytes.toPercentEncoding().toStdString();
        const QUrl url = fileUrl(text);
        EXPECT_TRUE(url.isLocalFile());
        EXPECT_EQ(nativePath(localPath(url)), bytes) << bytes.toPercentEncoding().toStdString();
        // The way through a drag or another program is by the URL's text.
        EXPECT_EQ(QUrl::fromEncoded(url.toEncoded()), url);
        EXPECT_EQ(nativePath(localPath(QUrl(url.toString(QUrl::FullyEncoded)))), bytes);
    }
}

TEST(NativePath, DifferentNamesAreDifferentEverywhere)
{
    for (const QByteArray& a : oddPaths())
        for (const QByteArray& b : oddPaths()) {
            EXPECT_EQ(pathText(a) == pathText(b), a == b);
            EXPECT_EQ(fileUrl(pathText(a)) == fileUrl(pathText(b)), a == b);
        }
    EXPECT_NE(fileUrl(pathText("/a\xE9.pdf")), fileUrl(pathText("/a\xEA.pdf")));
}

TEST(NativePath, AgreesWithQtOnValidNames)
{
    QStringList paths = {QString::fromUtf8("/\xC3\xA9t\xC3\xA9/x"), QStringLiteral("/a%FFb"),
                         QStringLiteral("/a%2Fb")};
    for (char c = 1; c > 0 && c < 127; ++c)
        if (c != '/') paths.append(QStringLiteral("/a") + QLatin1Char(c) + u'b');
    for (const QString& path : paths) {
        EXPECT_EQ(fileUrl(path), QUrl::fromLocalFile(path)) << path.toStdString();
        EXPECT_EQ(localPath(QUrl::fromLocalFile(path)), path) << path.toStdString();
    }
}

TEST(NativePath, UrlsThatNameNoFileOfThisMachine)
{
    for (const char* url : {"", "http://example.org/a.pdf", "a.pdf", "file:///a.pdf%00.txt"})
        EXPECT_EQ(localPath(QUrl::fromEncoded(url)), QString()) << url;
    EXPECT_EQ(localPath(QUrl::fromEncoded("file://localhost/a.pdf")), QStringLiteral("/a.pdf"));
}

TEST(NativePath, PeopleSeeAReplacementCharacterForEachForeignByte)
{
    EXPECT_EQ(readableName(pathText("/\xFF\xFE.pdf")), QStringLiteral("/\uFFFD\uFFFD.pdf"));
    EXPECT_EQ(readableName(pathText("/\xF0\x9F\x93\x84.pdf")), QString::fromUtf8("/\xF0\x9F\x93\x84.pdf"));
}

TEST(NativePath, ExtensionsAsTheyAreWritten)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"/d/a.pdf", "pdf"}, {"/d/a.PDF", "PDF"},  {"/d/a.tar.gz", "gz"},
        {"/d.x/a", ""},      {"/d/.pdf", ""},      {"/d/.hidden.pdf", "pdf"},
        {"/d/a.", ""},       {"/d/a.pdf/", "pdf"}, {"", ""},
        {"/", ""},           {"a.pdf\r", "pdf\r"}, {"/d/a..tif", "tif"}};
    for (const auto& [path, extension] : cases)
        EXPECT_EQ(pathExtension(QString::fromLatin1(path)), QString::fromLatin1(extension)) << path;
}

} // namespace
} // namespace quillfern
