#include "batch/JobIndex.h"

#include "platform/system/NativePath.h"
#include "stamps/TextStamp.h"
#include "support/Tools.h"

namespace quillfern {
namespace {

class Index : public testing::Test
{
  protected:
    Index()
    {
        job.configuration.options.index = true;
        job.outputFolder = asPath(scratch.path());
        for (const char* const name : {"/in/a,b.pdf", "/in/=1+1.pdf", "/in/quote\"\n.pdf", "/in/caf\xE9.pdf",
                                       "/in/e.pdf", "/in/f.pdf"}) {
            OutputFile output;
            output.initWithData(FilePath(), std::vector{*FileItem::initWithURL(FilePath::fromBytes(name))});
            job.outputFiles.push_back(output);
        }
        FileOutcome created{FileStatus::Created, std::nullopt, 2, NumbersUsed{-7, -6}};
        created.sourceSha256 = "0a";
        created.copySha256 = "0b";
        const QString out = u"/out"_s;
        files = {{u"a,b.pdf"_s, out, created},
                 {u"=1+1.pdf"_s, out,
                  FileOutcome::without(FileStatus::Failed, u"=cmd|' /C calc'!A0, said \"x\""_s)},
                 {u"q.pdf"_s, out, FileOutcome::without(FileStatus::Skipped, u"-was there"_s)},
                 {pathText("caf\xE9.pdf"), out, created},
                 {u"e.pdf"_s, out, FileOutcome::without(FileStatus::Cancelled, u"x"_s)}};
    }

    const Scratch scratch;
    Job job;
    std::vector<LogFiles> files;
};

TEST_F(Index, HasALineForEachFileThatEveryReaderTakesForText)
{
    auto stamp = std::make_shared<TextStamp>();
    stamp->number.paddingLength = 4;
    stamp->number.paddingCharacter = u"="_s;
    job.configuration.stamps = valuesOf({stamp});
    EXPECT_EQ(jobIndex(job, files).toStdString(),
              "order,source,copy,pages,first,last,outcome,remark,source_sha256,copy_sha256\r\n"
              "1,\"/in/a,b.pdf\",\"/out/a,b.pdf\",2,'==-7,'==-6,created,,0a,0b\r\n"
              "2,/in/=1+1.pdf,,,,,failed,\"'=cmd|' /C calc'!A0, said \"\"x\"\"\",,\r\n"
              "3,\"/in/quote\"\"\n.pdf\",/out/q.pdf,,,,skipped,'-was there,,\r\n"
              "4,file:///in/caf%E9.pdf,file:///out/caf%E9.pdf,2,'==-7,'==-6,created,,0a,0b\r\n"
              "5,/in/e.pdf,,,,,cancelled,x,,\r\n"
              "6,/in/f.pdf,,,,,not-begun,,,\r\n");
    job.configuration.stamps.clear();
    EXPECT_TRUE(jobIndex(job, files).contains(",2,-7,-6,created")) << "a negative number is no formula";
}

TEST_F(Index, IsWrittenBesideTheCopiesOrWhereItIsToBe)
{
    const QString beside = scratch.path(u"index.csv"_s);
    scratch.write(u"index.csv"_s, "of an earlier job");
    writeIndex(job, files);
    EXPECT_EQ(readFile(beside), jobIndex(job, files));
    EXPECT_EQ(readFile(scratch.path(u"index-2.csv"_s)), "of an earlier job");
    job.configuration.options.indexFile = asPath(scratch.path(u"x/y.csv"_s));
    EXPECT_THROW(writeIndex(job, files), Failure);
    job.configuration.options.indexFile = asPath(scratch.write(u"named.csv"_s, "old"));
    writeIndex(job, {});
    EXPECT_EQ(readFile(scratch.path(u"named.csv"_s)).count("not-begun"), 6);
    job.configuration.options.index = false;
    EXPECT_FALSE(indexPath(job));
}

} // namespace
} // namespace quillfern
