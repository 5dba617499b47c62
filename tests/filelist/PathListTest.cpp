#include "filelist/PathListImport.h"

#include "filelist/AllowedFileTypes.h"
#include "filelist/FileListSupport.h"

namespace quillfern {
namespace {

QString allTypes()
{
    return allowedFileTypes().join(u',');
}

QList<QByteArray> pathsOf(const QList<FilePath>& files)
{
    QList<QByteArray> paths;
    for (const FilePath& file : files)
        paths.append(file.bytes());
    return paths;
}

TEST(PathList, KeepsLinesOfAnAllowedType)
{
    const QByteArray here = nativePath(QDir::currentPath());
    const std::vector<std::pair<QByteArray, QList<QByteArray>>> cases = {
        {"", {}},
        {"\n\n  \n", {}},
        {"/d/a.pdf", {"/d/a.pdf"}},
        {"/d/b.tif\n/d/a.pdf\n/d/b.tif\n", {"/d/b.tif", "/d/a.pdf"}},
        {"/d/Mixed.PdF\n/d/x.TiFf\n/d/y.docx\n/d/folder\n/d/z.jpeg",
         {"/d/Mixed.PdF", "/d/x.TiFf", "/d/z.jpeg"}},
        {"/d/a.pdf\r\n/d/b.pdf\r\n/d/c.pdf", {"/d/c.pdf"}}, // Windows line ends are part of the extension
        {" /d/blank.pdf", {here + "/ /d/blank.pdf"}},       // nothing is trimmed
        {"/d/blank.pdf ", {}},
        {"rel.pdf\n./rel.pdf\n" + here + "//rel.pdf\nd/../rel.pdf\nsub//rel.pdf/",
         {here + "/rel.pdf", here + "/sub/rel.pdf"}},
        {"/d/100% #1?.pdf\n//net/a.pdf", {"/d/100% #1?.pdf", "/net/a.pdf"}},
        {"/d/.pdf\n/d/pdf\n/d.pdf/x", {}},
        {QByteArray("/d/a\0b.pdf\n/d/c.pdf", 19), {"/d/c.pdf"}},
        {"/d/\xC3\xA4.pdf\n/d/latin\xE4.pdf", {"/d/\xC3\xA4.pdf", "/d/latin\xE4.pdf"}},
        {"\xEF\xBB\xBF/d/a.pdf\n", {"/d/a.pdf"}}, // the mark of an encoding is no part of a path
    };
    const Scratch scratch;
    for (const auto& [text, paths] : cases) {
        PathListParser parser(allTypes());
        EXPECT_TRUE(parser.parseFile(asPath(scratch.write(u"list.txt"_s, text))));
        EXPECT_EQ(pathsOf(parser.files()), paths) << text.toStdString();
        EXPECT_EQ(parser.totalFilesFound(), u"Total Files Found : %1"_s.arg(paths.size()));
    }
}

TEST(PathList, OnlyTypesSpeltInCapitalsMatch)
{
    PathListParser parser(u"pdf,TIF"_s);
    parser.parseText(u"/a.pdf\n/a.tif\n/a.Tif"_s);
    EXPECT_EQ(pathsOf(parser.files()), (QList<QByteArray>{"/a.tif", "/a.Tif"}));
    parser.parseText(std::nullopt);
    EXPECT_TRUE(parser.files().isEmpty()) << "each text begins anew";
}

TEST(PathList, AFileThatCannotBeReadIsNoText)
{
    const Scratch scratch;
    PathListParser parser(allTypes());
    parser.parseText(u"/a.pdf"_s);
    EXPECT_FALSE(parser.parseFile(asPath(scratch.path(u"gone.txt"_s))));
    EXPECT_TRUE(parser.files().isEmpty());
    EXPECT_FALSE(parser.parseFile(asPath(scratch.path())));
    const QString huge = scratch.write(u"huge.txt"_s, "/a.pdf\n");
    ASSERT_TRUE(QFile::resize(huge, 3LL << 30));
    EXPECT_FALSE(parser.parseFile(asPath(huge)));
}

} // namespace
} // namespace quillfern
