#include "batch/Log.h"

#include "platform/system/TimeTaken.h"
#include "support/Fakes.h"
#include "support/Tools.h"

#include <QXmlStreamReader>
#include <thread>

namespace quillfern {
namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);

/// "name key=value ..." of every element in order, read by a parser.
QStringList elements(const QByteArray& xml)
{
    QStringList list;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        QString line = reader.name().toString();
        for (const QXmlStreamAttribute& attribute : reader.attributes())
            line += u' ' + attribute.name().toString() + u'=' + attribute.value().toString();
        list.append(line);
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return list;
}

class LogFileTest : public testing::Test
{
  protected:
    void SetUp() override { ASSERT_TRUE(folders.createApplicationUsersFolder(u"Logs"_s)); }

    Scratch scratch;
    FakeFolders folders{scratch.path()};
    FakeClock clock;
};

TEST_F(LogFileTest, HasOneElementAnOutputInOrder)
{
    Log log(clock, folders);
    log.startTime = QDateTime(QDate(2026, 11, 15), QTime(23, 59, 58));
    log.endTime = QDateTime(QDate(2026, 11, 16), QTime(0, 5, 9));
    log.files.push_back({u"a.pdf"_s, u"/out"_s, {FileStatus::CreatedNothing}, 12, {}});
    log.files.push_back({u"<b> & \"c\"\n\x01.pdf"_s, u"/out"_s, {FileStatus::NoPages}, 0, {}});
    log.files[0].logFiles.push_back({u"in.pdf"_s, 3, 4, u"Completed"_s});
    ASSERT_TRUE(log.save(english));
    EXPECT_EQ(log.logFilePath()->text(), scratch.path(u"Orvane/Quillfern1/Logs/161126000509.log"_s));
    const QByteArray xml = readFile(log.logFilePath()->text());
    EXPECT_EQ(elements(xml).join(u'|').toStdString(),
              "Log StartTime=11/15/2026 11:59:58 PM EndTime=11/16/2026 12:05:09 AM|"
              "Files FileName=a.pdf TargetPath=/out Status=Completed Pages=12|"
              "File SourceImageFile=in.pdf SourcePageNo=3 PageNo=4 Status=Completed|"
              "Files FileName=<b> & \"c\"\n\xEF\xBF\xBD.pdf TargetPath=/out Status=No Pages Pages=0");
    EXPECT_GE(xml.count('\n'), 5) << "one element a line";
}

TEST_F(LogFileTest, DigitsArePlainInEveryLocale)
{
    Log log(clock, folders);
    ASSERT_TRUE(log.save(QLocale(QLocale::Arabic, QLocale::Egypt)));
    EXPECT_TRUE(readFile(log.logFilePath()->text()).contains("11/16/2026 02:05:09"));
}

TEST_F(LogFileTest, JobsThatEndInOneSecondKeepTheirLogs)
{
    constexpr int jobs = 24;
    std::vector<std::unique_ptr<Log>> logs;
    for (int i = 0; i < jobs; ++i) {
        logs.push_back(std::make_unique<Log>(clock, folders));
        logs.back()->files.push_back({u"job%1.pdf"_s.arg(i), u"/out"_s, {}, 1, {}});
    }
    std::vector<std::thread> threads;
    for (const auto& log : logs)
        threads.emplace_back([&log] {
            EXPECT_TRUE(log->save(english) && log->isWritten());
            EXPECT_EQ(log->logFilePath()->name(), u"161126140509.log"_s);
        });
    for (std::thread& thread : threads)
        thread.join();
    Log last(clock, folders);
    last.files.push_back({u"last.pdf"_s, u"/out"_s, {}, 1, {}});
    EXPECT_TRUE(last.save(english));

    const QDir folder(scratch.path(u"Orvane/Quillfern1/Logs"_s));
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    EXPECT_EQ(names.size(), jobs + 1) << names.join(u' ').toStdString();
    EXPECT_TRUE(names.contains(u"161126140509-2.log"_s));
    EXPECT_TRUE(names.contains(u"161126140509-25.log"_s));
    QByteArray all;
    for (const QString& name : names)
        all += readFile(folder.filePath(name));
    for (int i = 0; i < jobs; ++i)
        EXPECT_EQ(all.count("\"job" + QByteArray::number(i) + ".pdf\""), 1) << i;
    EXPECT_TRUE(readFile(folder.filePath(u"161126140509.log"_s)).contains("last.pdf"));
}

TEST(LogWithoutFolder, NamesAPathAndLosesNothingElse)
{
    Scratch scratch;
    const FakeFolders folders(scratch.path());
    const FakeClock clock;
    Log log(clock, folders);
    EXPECT_TRUE(log.save()) << "deliberately: a log that cannot be written is no failure of the job";
    ASSERT_TRUE(log.logFilePath());
    EXPECT_FALSE(log.isWritten());
    EXPECT_FALSE(QFile::exists(log.logFilePath()->text()));
}

TEST(TimeTaken, LeavesOutWhatIsZero)
{
    const QDateTime start(QDate(2026, 11, 16), QTime(10, 0, 0));
    const Rows<qint64, const char*> cases = {{0, ""},
                                             {999, ""},
                                             {1000, "1 sec(s) "},
                                             {65'999, "1 min(s) 5 sec(s) "},
                                             {60'000, "1 min(s) "},
                                             {3'605'000, "1 hr(s) 5 sec(s) "},
                                             {90'000'000, "25 hr(s) "}};
    for (const auto& [milliseconds, text] : cases)
        EXPECT_EQ(timeTakenString(start, start.addMSecs(milliseconds)).toStdString(), text);
    EXPECT_EQ(timeTakenString({}, start), QString());
    EXPECT_EQ(timeTakenString(start, {}), QString());
    EXPECT_EQ(timeTakenLabel(QString(), 3, 3), u"Total Time Taken :  3/3"_s);
    EXPECT_EQ(timeTakenLabel(u"1 min(s) 5 sec(s) "_s, 2, 3), u"Total Time Taken : 1 min(s) 5 sec(s)  2/3"_s);
}

} // namespace
} // namespace quillfern
