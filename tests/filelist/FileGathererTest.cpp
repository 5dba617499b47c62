#include "filelist/FileGatherer.h"

#include "filelist/FileListSupport.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

namespace quillfern {
namespace {

class Gathering : public testing::Test, public GatherObserver
{
  public:
    void resetViewObject(bool idle) override { note(idle ? "idle" : "busy"); }
    void startProcess() override { note("start"); }
    void stopProcess() override
    {
        EXPECT_FALSE(isProcessing_);
        note("stop");
    }
    void updateTimeTakenLabel(const QString& text) override { note(text.toUtf8().constData()); }
    void filesAdded() override
    {
        EXPECT_TRUE(onMainThread());
        shown_.append(files_.count());
        if (onAdded_) onAdded_();
    }

  protected:
    static bool onMainThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }
    void note(const char* what)
    {
        EXPECT_TRUE(onMainThread());
        notes_.append(QString::fromUtf8(what));
    }

    /// Starts a request and serves events until it has ended.
    void gather(const QStringList& paths, bool isFolders = true, bool subfolders = true)
    {
        Arguments request{{}, isFolders, subfolders};
        for (const QString& path : paths)
            request.urls.append(asPath(path));
        gather(request);
    }
    void gather(const Arguments& request)
    {
        notes_.clear();
        ASSERT_TRUE(gatherer_.start(request, password_));
        serve([&] { return notes_.size() == 6; });
        EXPECT_EQ(notes_.size(), 6) << "it did not end";
        EXPECT_FALSE(isProcessing_);
    }
    QList<FilePath> allPaths() const
    {
        QList<FilePath> paths;
        for (const FileItem* item : files_.items())
            paths.append(item->filePath());
        return paths;
    }
    int withPassword() const
    {
        int count = 0;
        for (const FileItem* item : files_.items())
            count += item->pdfOpenPassword().isEmpty() ? 0 : 1;
        return count;
    }
    /// f0.pdf and so on, each without its cross-reference table, which has to be rebuilt.
    void makeSlowFiles(int count) const
    {
        const QByteArray whole = numberedPdf(1000);
        const QString first = scratch_.write(u"f0.pdf"_s, whole.left(whole.size() - 40));
        for (int i = 1; i < count; ++i)
            ASSERT_TRUE(QFile::link(first, scratch_.path(u"f%1.pdf"_s.arg(i))));
    }
    static void serve(const std::function<bool()>& done)
    {
        QElapsedTimer timer;
        timer.start();
        while (!done() && timer.elapsed() < 60'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    Scratch scratch_;
    FileList files_;
    std::atomic<bool> isProcessing_ = false;
    EventLoopMainThread mainThread_;
    FakeClock clock_;
    QStringList notes_;
    QList<int> shown_;
    std::function<void()> onAdded_;
    std::optional<QString> password_;
    FileGatherer gatherer_{files_, isProcessing_, mainThread_, clock_, *this};
};

TEST_F(Gathering, FoldersAndFilesInTheOrderOfDiscoveryHoweverLongEachTakes)
{
    QStringList expected;
    for (int i = 0; i < 300; ++i) {
        // Files that are slow to count stand among files that are quick to count.
        const QString name = u"d/f%1.pdf"_s.arg(i);
        scratch_.write(name, i % 50 == 0 ? numberedPdf(400) : QByteArray("none"));
        expected.append(u"f%1.pdf"_s.arg(i));
    }
    scratch_.write(u"single.pdf"_s, numberedPdf(2));
    scratch_.write(u"refused.Pdf"_s, numberedPdf(2));
    gather({scratch_.path(u"single.pdf"_s), scratch_.path(u"refused.Pdf"_s), scratch_.path(u"d"_s),
            scratch_.path(u"gone"_s)});
    EXPECT_EQ(namesOf(files_), QStringList(u"single.pdf"_s) + expected);
    EXPECT_EQ(files_.totals().pdfPages, 2 + 6 * 400);
    EXPECT_EQ(files_.at(1).pages(), 400);
    EXPECT_TRUE(files_.at(1).isSelected());
}

TEST_F(Gathering, FilesAreTakenAsTheyAre)
{
    const QString odd = scratch_.write(u"odd.Pdf"_s, numberedPdf(2));
    const QString foreign = scratch_.path() + u'/' + pathText("latin\xE9.pdf");
    ASSERT_EQ(std::rename(nativePath(scratch_.write(u"x"_s, numberedPdf(3))).constData(),
                          nativePath(foreign).constData()),
              0);
    password_ = u"secret"_s;
    const QString gone = scratch_.path(u"gone.pdf"_s);
    gather({odd, gone, scratch_.path() + u"/./gone.pdf"_s, foreign, odd + u'/', odd}, false);
    ASSERT_EQ(files_.count(), 3);
    EXPECT_EQ(files_.at(0).pages(), 2);
    EXPECT_EQ(files_.at(0).pdfOpenPassword(), u"secret"_s);
    EXPECT_EQ(files_.at(1).pages(), 0) << "a file that vanished stays in the list, without pages";
    EXPECT_EQ(files_.at(2).pages(), 3);
    EXPECT_EQ(files_.at(2).filePath(), asPath(foreign));
    Arguments web;
    web.urls = {FilePath(), FilePath()};
    gather(web);
    EXPECT_EQ(files_.count(), 3);
}

TEST_F(Gathering, TheWindowHearsOfItInOrder)
{
    clock_.step = 61'000;
    gather({scratch_.path()});
    EXPECT_EQ(notes_, (QStringList{u"busy"_s, u"start"_s, u"Total Time Taken : In Process... 0/0"_s,
                                   u"stop"_s, u"idle"_s, u"Total Time Taken : 1 min(s) 1 sec(s)  0/0"_s}));
    EXPECT_EQ(password_, QString()) << "an absent password becomes the empty one";
}

TEST_F(Gathering, TheSameFolderTwiceAddsNothingAndSortsNothing)
{
    for (const char* name : {"b.pdf", "a.pdf"})
        scratch_.write(QString::fromLatin1(name), numberedPdf(1));
    gather({scratch_.path()});
    files_.sort({u"name"_s, false});
    EXPECT_EQ(namesOf(files_), words("b.pdf a.pdf"));
    files_.moveUp({1});
    gather({scratch_.path(), scratch_.path() + u'/', scratch_.path() + u"/./"_s,
            scratch_.path() + u"//a.pdf"_s});
    EXPECT_EQ(namesOf(files_), words("a.pdf b.pdf"));
    scratch_.write(u"aa.pdf"_s, numberedPdf(1));
    gather({scratch_.path()});
    EXPECT_EQ(namesOf(files_), words("b.pdf aa.pdf a.pdf")) << "what was sorted is sorted again";
}

TEST_F(Gathering, AnOrderGivenUpMeanwhileIsNotRestored)
{
    scratch_.write(u"b.pdf"_s, numberedPdf(1));
    gather({scratch_.path()});
    for (const bool isMoved : {false, true}) {
        files_.sort({u"name"_s, true});
        const QString name = isMoved ? u"a0.pdf"_s : u"a1.pdf"_s;
        scratch_.write(name, numberedPdf(1));
        onAdded_ = [&] {
            if (isMoved) files_.moveUp({1});
            files_.forgetOrder();
        };
        gather({scratch_.path(name)}, false);
        EXPECT_EQ(files_.at(files_.count() - 1).name(), name);
    }
}

TEST_F(Gathering, ACancelEndsItAndKeepsWhatIsThere)
{
    makeSlowFiles(300);
    onAdded_ = [&] { isProcessing_ = false; };
    gather({scratch_.path()});
    EXPECT_GT(files_.count(), 0);
    EXPECT_LT(files_.count(), 250);
    for (int row = 0; row < files_.count(); ++row)
        ASSERT_EQ(files_.at(row).name(), u"f%1.pdf"_s.arg(row)) << "no gap";

    onAdded_ = nullptr;
    const int kept = files_.count();
    gather({scratch_.path(u"f0.pdf"_s), scratch_.path(u"f299.pdf"_s)}, false);
    EXPECT_EQ(files_.count(), kept + 1) << "and the next request starts afresh";
}

TEST_F(Gathering, OneRequestAtATimeAndTheNextOneAtOnce)
{
    scratch_.write(u"a/1.pdf"_s, numberedPdf(1));
    scratch_.write(u"b/2.pdf"_s, numberedPdf(1));
    const Arguments a{{asPath(scratch_.path(u"a"_s))}, true, false};
    const Arguments b{{asPath(scratch_.path(u"b"_s))}, true, false};
    ASSERT_TRUE(gatherer_.start(a, password_));
    EXPECT_FALSE(gatherer_.start(b, password_));
    serve([&] { return notes_.contains(u"stop"_s); });
    EXPECT_TRUE(gatherer_.start(b, password_));
    serve([&] { return notes_.size() == 12; });
    EXPECT_EQ(namesOf(files_), words("1.pdf 2.pdf"));
}

TEST_F(Gathering, APasswordIsForTheNamedFilesAndCountsThemAnew)
{
    for (const char* name : {"a.pdf", "b.pdf", "c.pdf", "d.pdf"})
        scratch_.write(QString::fromLatin1(name), numberedPdf(1));
    gather({scratch_.path()});
    scratch_.write(u"c.pdf"_s, numberedPdf(5));
    const QList<FilePath> paths = allPaths();
    notes_.clear();
    gatherer_.startPasswords({paths[0], paths[2], paths[3]}, u"secret"_s);
    gatherer_.startPasswords({paths[3]}, u"other"_s); // waits for its turn
    EXPECT_EQ(withPassword(), 0) << "not on this thread";
    files_.moveUp({1, 2, 3});
    files_.remove({3});
    serve([&] { return notes_.size() == 12; });
    EXPECT_EQ(notes_.mid(6, 5), notes_.mid(0, 5)) << "busy and idle again";
    ASSERT_EQ(namesOf(files_), words("b.pdf c.pdf d.pdf"));
    for (const auto& [row, pages, password] : {std::tuple(0, 1, ""), {1, 5, "secret"}, {2, 1, "other"}}) {
        EXPECT_EQ(files_.at(row).pages(), pages) << row;
        EXPECT_EQ(files_.at(row).pdfOpenPassword(), QString::fromLatin1(password)) << row;
    }
    EXPECT_EQ(files_.totals().pdfPages, 7);
}

TEST_F(Gathering, ACancelLeavesTheOtherFilesTheirPasswords)
{
    makeSlowFiles(300);
    gather({scratch_.path()});
    gatherer_.startPasswords(allPaths(), u"secret"_s);
    serve([&] { return withPassword() > 0; });
    isProcessing_ = false;
    serve([&] { return notes_.size() == 12; });
    const int reached = withPassword();
    EXPECT_LT(reached, 250);
    for (int row = 0; row < files_.count(); ++row)
        EXPECT_EQ(files_.at(row).pdfOpenPassword().isEmpty(), row >= reached) << row;
}

TEST_F(Gathering, AStopEndsItWhetherItHasBegunOrNot)
{
    makeSlowFiles(300);
    const Arguments request{{asPath(scratch_.path())}, true, true};
    for (const bool hasBegun : {false, true}) {
        FileGatherer other(files_, isProcessing_, mainThread_, clock_, *this);
        ASSERT_TRUE(other.start(request, password_));
        if (hasBegun) serve([&] { return !files_.empty(); });
        EXPECT_FALSE(other.stop(0)) << "it has to tell the window first";
        EXPECT_TRUE(other.stop(60'000));
        EXPECT_EQ(!files_.empty(), hasBegun);
        EXPECT_LT(files_.count(), 250);
        EXPECT_FALSE(isProcessing_);
        EXPECT_FALSE(other.start(request, password_));
    }
}

TEST_F(Gathering, GoingAwayWhileItRunsIsSafe)
{
    makeSlowFiles(300);
    {
        FileGatherer other(files_, isProcessing_, mainThread_, clock_, *this);
        ASSERT_TRUE(other.start({{asPath(scratch_.path())}, true, true}, password_));
    }
    EXPECT_FALSE(isProcessing_);
    EXPECT_TRUE(files_.empty()) << "it had not begun";
}

} // namespace
} // namespace quillfern
