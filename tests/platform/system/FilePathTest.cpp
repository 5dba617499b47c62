#include "platform/system/FilePath.h"

#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Folders.h"
#include "platform/system/NativePath.h"
#include "support/Tools.h"

#include <unistd.h>

namespace quillfern {
namespace {

FilePath at(const QByteArray& bytes)
{
    return FilePath::fromBytes(bytes);
}

const std::vector<QByteArray>& oddPaths()
{
    static const std::vector<QByteArray> paths = {
        "/",
        "/plain/a.pdf",
        "/with blank/100%25 a?b#c&d;e.pdf",
        "/line\nbreak\tand\x01"
        "control.pdf",
        "/\xC3\xA9t\xC3\xA9/\xE6\xBC\xA2.pdf",
        "/\xF0\x9F\x93\x84.pdf",      // beyond the basic plane: a surrogate pair in the text
        "/latin\xE9.pdf",             // not UTF-8
        "/latin\xEA.pdf",             // another name, though people see the same
        "/\xFF\xFE\x80.pdf",          // never in UTF-8
        "/cut\xE6\xBC.pdf",           // ends within a character
        "/\xC0\xAFoverlong.pdf",      // a slash in two bytes must not become one
        "/\xED\xB2\x80surrogate.pdf", // a surrogate in three bytes
        "/\xF0\x9F\x93\x84\xFF.pdf",  // an escape right after a pair
        "/C:\\back\\slash.pdf",       // a character as any other
        "/ blank .pdf ",
        "/.../..x/x..",
        "/" + QByteArray(9000, 'x') + "\xE9/" + QByteArray(300, 'y'), // longer than the system takes
    };
    return paths;
}

TEST(FilePathTest, EveryNameComesBackByteForByte)
{
    for (const QByteArray& bytes : oddPaths()) {
        const std::string shown = bytes.toPercentEncoding().toStdString();
        const FilePath path = at(bytes);
        EXPECT_EQ(path.bytes(), bytes) << shown;
        EXPECT_EQ(FilePath::fromText(path.text()), path) << shown;
        EXPECT_EQ(nativePath(pathText(bytes)), bytes) << shown;
        EXPECT_EQ(path.parent().child(path.name()), path) << shown;
        const QUrl url = path.url();
        EXPECT_TRUE(url.isLocalFile()) << shown;
        EXPECT_EQ(FilePath::fromUrl(url), path) << shown;
        // The way through a drag or another program is by the URL's text.
        EXPECT_EQ(FilePath::fromUrl(QUrl::fromEncoded(url.toEncoded(), QUrl::StrictMode)), path) << shown;
        EXPECT_EQ(FilePath::fromUrl(QUrl(url.toString(QUrl::FullyEncoded))), path) << shown;
        EXPECT_TRUE(path.readable().isValidUtf16()) << shown;
    }
}

TEST(FilePathTest, OneFileHasOneSpelling)
{
    const QByteArray here = []() {
        char folder[4096];
        return QByteArray(::getcwd(folder, sizeof folder));
    }();
    // "@" is the current folder.
    const QByteArray cases = "/=/;//=/;/.=/;/..=/;/../../a=/a;/a/=/a;/a//=/a;//a///b=/a/b;/./a/./b/.=/a/b;"
                             "/a.pdf/=/a.pdf;/nowhere/../a=/a;/nowhere/b/../../a=/a;/nowhere/b/..=/nowhere;"
                             "a.pdf=@/a.pdf;./a.pdf=@/a.pdf;.=@;gone/../a.pdf=@/a.pdf; /a=@/ /a;~/a=@/~/a;"
                             "C:\\a=@/C:\\a;file:///a=@/file:/a;=";
    for (const QByteArray& each : cases.split(';')) {
        const QByteArrayList givenAndClean = each.split('=');
        EXPECT_EQ(at(givenAndClean[0]).bytes(), QByteArray(givenAndClean[1]).replace("@", here))
            << each.constData();
    }
    EXPECT_TRUE(at(QByteArray("/a\0b", 4)).isEmpty() && at(QByteArray("\0", 1)).isEmpty());
    EXPECT_EQ(FilePath::fromText(u"/a"_s + QChar(u'\0')), FilePath());
}

TEST(FilePathTest, TheWayUpIsTheSystems)
{
    const Scratch scratch;
    scratch.write(u"far/sub/file"_s, "");
    const QByteArray top = resolvedPath(asPath(scratch.path())).bytes();
    ASSERT_EQ(::symlink((top + "/far/sub").constData(), (top + "/link").constData()), 0);
    ASSERT_EQ(::symlink("/", (top + "/root").constData()), 0);
    ASSERT_EQ(::symlink("loop", (top + "/loop").constData()), 0);
    ASSERT_EQ(::symlink("gone", (top + "/dangling").constData()), 0);
    for (const auto& [given, clean] : Rows<QByteArray, QByteArray>{
             {"/far/sub/../x", top + "/far/x"},
             {"/link/x/../file", top + "/link/file"}, // the link itself stays
             {"/link/../x", top + "/far/x"},          // not beside the link
             {"/link/../../x", top + "/x"},
             {"/link/../sub/../../link/..", top + "/far"},
             {"/root/../x", "/x"},
             {"/far/sub/file/../x", top + "/far/sub/x"},
             {"/loop/../x", top + "/loop/../x"}, // leads nowhere, and so does its parent
             {"/dangling/../../x", top + "/dangling/../../x"}})
        EXPECT_EQ(at(top + given).bytes(), clean) << given.toStdString();
    EXPECT_EQ(at(top + "/loop/..").parent().bytes(), top + "/loop/../..");
    EXPECT_EQ(fileKind(at(top + "/loop/..")), FileKind::Missing);
}

TEST(FilePathTest, Parts)
{
    using Text = const char*;
    for (const auto& [given, name, stem, extension, parent] :
         Rows<Text, Text, Text, Text, Text>{{"/d/a.pdf", "a.pdf", "a", "pdf", "/d"},
                                            {"/d/a.PDF", "a.PDF", "a", "PDF", "/d"},
                                            {"/d/a.tar.gz", "a.tar.gz", "a.tar", "gz", "/d"},
                                            {"/d.x/a", "a", "a", "", "/d.x"},
                                            {"/d/.pdf", ".pdf", ".pdf", "", "/d"},
                                            {"/d/.x.pdf", ".x.pdf", ".x", "pdf", "/d"},
                                            {"/d/a.", "a.", "a", "", "/d"},
                                            {"/d/a..tif", "a..tif", "a.", "tif", "/d"},
                                            {"/d/a.pdf/", "a.pdf", "a", "pdf", "/d"},
                                            {"/a.pdf\r", "a.pdf\r", "a", "pdf\r", "/"},
                                            {"/", "", "", "", "/"},
                                            {"", "", "", "", ""}}) {
        const FilePath path = at(given);
        EXPECT_EQ(path.name(), QLatin1String(name)) << given;
        EXPECT_EQ(path.stem(), QLatin1String(stem)) << given;
        EXPECT_EQ(path.extension(), QLatin1String(extension)) << given;
        EXPECT_EQ(path.parent(), at(parent)) << given;
        EXPECT_EQ(path.isEmpty(), *given == '\0') << given;
    }
    EXPECT_EQ(at("/").child(u"a"_s), at("/a"));
    EXPECT_EQ(at("/a").child(u"b/./c//d"_s), at("/a/b/c/d"));
    EXPECT_EQ(at("/a").child(pathText("\xE9")), at("/a/\xE9"));
    EXPECT_EQ(at("/a").child(QString()), at("/a"));
    EXPECT_EQ(at("/a").child(QString(QChar(u'\0'))), FilePath());
    EXPECT_EQ(FilePath().child(u"a"_s), FilePath()) << "and not in the current folder";
}

TEST(FilePathTest, UrlsAreThoseOfQtForValidNames)
{
    QStringList paths = {QString::fromUtf8("/\xC3\xA9t\xC3\xA9/x"), u"/a%FFb"_s, u"/a%2Fb"_s};
    for (char c = 1; c > 0 && c < 127; ++c)
        if (c != '/') paths.append(u"/a"_s + QLatin1Char(c) + u'b');
    for (const QString& path : paths) {
        EXPECT_EQ(asPath(path).url(), QUrl::fromLocalFile(path)) << path.toStdString();
        EXPECT_EQ(FilePath::fromUrl(QUrl::fromLocalFile(path)).text(), path) << path.toStdString();
    }
    EXPECT_EQ(at("/\xE9 %.pdf").url().toEncoded(), "file:///%E9%20%25.pdf");
    EXPECT_EQ(FilePath().url(), QUrl());
}

TEST(FilePathTest, UrlsThatNameNoFileOfThisMachine)
{
    for (const char* url : {"", "http://example.org/a.pdf", "a.pdf", "file:a.pdf", "file:///a.pdf%00.txt"})
        EXPECT_EQ(FilePath::fromUrl(QUrl::fromEncoded(url)), FilePath()) << url;
    EXPECT_EQ(FilePath::fromUrl(QUrl::fromEncoded("file://localhost/d/./a.pdf")), at("/d/a.pdf"));
    EXPECT_EQ(
        filePaths({QUrl(u"file:///b/"_s), QUrl(u"https://example.org/a"_s), QUrl(), QUrl(u"file:///a"_s)}),
        (QList<FilePath>{at("/b"), at("/a")}));
}

TEST(FilePathTest, PeopleSeeAReplacementCharacterForEachForeignByte)
{
    EXPECT_EQ(at("/\xFF\xFE.pdf").readable(), u"/\uFFFD\uFFFD.pdf"_s);
    EXPECT_EQ(at("/\xF0\x9F\x93\x84.pdf").readable(), QString::fromUtf8("/\xF0\x9F\x93\x84.pdf"));
}

TEST(FilePathTest, WhatIsDoneWithFilesReachesNamesOfAnyBytes)
{
    const Scratch scratch;
    const FilePath folder = asPath(scratch.path()).child(pathText("\xE9/deep\xFF"));
    EXPECT_TRUE(makeFolders(folder) && makeFolders(folder));
    EXPECT_EQ(fileKind(folder), FileKind::Folder);
    EXPECT_TRUE(mayWriteInto(folder));
    EXPECT_FALSE(mayWriteInto(folder.child(u"gone"_s)));
    const FilePath link = folder.child(pathText("li\xE9nk"));
    ASSERT_EQ(::symlink("gone", link.bytes().constData()), 0);
    EXPECT_TRUE(isNameTaken(link) && fileKind(link) == FileKind::Missing);
    const FilePath other = folder.child(u"other"_s);
    EXPECT_TRUE(renameFile(link, other) && isNameTaken(other) && !isNameTaken(link));
    EXPECT_FALSE(renameFile(link, other));
    EXPECT_TRUE(removeFile(other) && removeFile(other) && !isNameTaken(other));
    const FilePath file = asPath(scratch.write(u"file"_s, "x"));
    EXPECT_FALSE(makeFolders(file) || makeFolders(file.child(u"a"_s)) || makeFolders(FilePath()));
}

TEST(UserFoldersTest, FollowTheEnvironmentWhateverItsBytes)
{
    const QByteArray home = qgetenv("HOME");
    const QByteArray data = qgetenv("XDG_DATA_HOME");
    const bool hasData = qEnvironmentVariableIsSet("XDG_DATA_HOME");
    qputenv("HOME", "/home/\xE9");
    const UserFolders folders;
    for (const auto& [variable, base] : Rows<QByteArray, QByteArray>{{"/d\xFF/", "/d\xFF"},
                                                                     {"relative", "/home/\xE9/.local/share"},
                                                                     {"", "/home/\xE9/.local/share"}}) {
        qputenv("XDG_DATA_HOME", variable);
        EXPECT_EQ(folders.getAppPath(), at(base + "/Orvane/Quillfern1"));
    }
    qunsetenv("HOME");
    EXPECT_EQ(homeFolder(), at("/"));
    qputenv("HOME", home);
    hasData ? qputenv("XDG_DATA_HOME", data) : qunsetenv("XDG_DATA_HOME");
}

} // namespace
} // namespace quillfern
