#include "platform/desktop/FreedesktopServices.h"

#include "platform/system/NativePath.h"
#include "support/Paths.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QThread>

namespace quillfern::desktop {
namespace {

/// A file manager that records the requests it gets.
class FakeFileManager final : public QDBusVirtualObject
{
  public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        EXPECT_EQ(message.interface(), u"org.freedesktop.FileManager1"_s);
        EXPECT_EQ(message.signature(), u"ass"_s);
        calls.append(message.member() + u' ' + message.arguments().value(0).toStringList().join(u' '));
        connection.send(refuses ? message.createErrorReply(QDBusError::Failed, u"no"_s)
                                : message.createReply());
        return true;
    }

    QStringList calls;
    bool refuses = false;
};

class Desktop : public testing::Test
{
  protected:
    void SetUp() override { ASSERT_TRUE(ours_.isConnected() && theirs_.isConnected()); }

    void startFileManager()
    {
        ASSERT_TRUE(theirs_.registerVirtualObject(u"/org/freedesktop/FileManager1"_s, &manager_));
        ASSERT_TRUE(theirs_.registerService(u"org.freedesktop.FileManager1"_s));
    }

    FreedesktopServices services()
    {
        return {ours_, [this](const QUrl& url) {
                    EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
                    opened_.append(QString::fromLatin1(url.toEncoded()));
                }};
    }

    /// Serves events until `requests` requests have arrived, or for ten seconds.
    void await(qsizetype requests)
    {
        QElapsedTimer timer;
        timer.start();
        while (manager_.calls.size() + opened_.size() < requests && timer.elapsed() < 10'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }

    PrivateBus bus_;
    QDBusConnection ours_ = bus_.connect("ours");
    QDBusConnection theirs_ = bus_.connect("theirs");
    FakeFileManager manager_;
    QStringList opened_;
};

TEST_F(Desktop, TheFileManagerIsAskedForAllFilesAtOnce)
{
    startFileManager();
    auto desktop = services();
    desktop.reveal(asPaths({u"/a/one 1.pdf"_s, pathText("/b/latin\xE9.pdf")}));
    desktop.showProperties(asPaths({u"/a/one 1.pdf"_s}));
    desktop.reveal({}); // without files, no request is sent
    await(2);
    EXPECT_EQ(manager_.calls, (QStringList{u"ShowItems file:///a/one%201.pdf file:///b/latin%E9.pdf"_s,
                                           u"ShowItemProperties file:///a/one%201.pdf"_s}));
    EXPECT_TRUE(opened_.isEmpty());
}

TEST_F(Desktop, WithoutAFileManagerEachFolderIsOpenedOnce)
{
    auto desktop = services();
    desktop.reveal(asPaths({u"/a/1.pdf"_s, u"/a/2.pdf"_s, u"/b/3.pdf"_s}));
    await(2);
    EXPECT_EQ(opened_, (QStringList{u"file:///a"_s, u"file:///b"_s}));
}

TEST_F(Desktop, AFileManagerThatRefusesIsReplacedByTheFolder)
{
    startFileManager();
    manager_.refuses = true;
    auto desktop = services();
    desktop.showProperties(asPaths({u"/a/1.pdf"_s}));
    await(2);
    EXPECT_EQ(opened_, QStringList{u"file:///a"_s});
}

TEST_F(Desktop, AWorkerOpensThroughTheMainThread)
{
    auto desktop = services();
    const std::unique_ptr<QThread> worker(QThread::create([&] { desktop.open(asPath(u"/out/a b.pdf"_s)); }));
    worker->start();
    worker->wait();
    EXPECT_TRUE(opened_.isEmpty());
    await(1);
    EXPECT_EQ(opened_, QStringList{u"file:///out/a%20b.pdf"_s});
}

} // namespace
} // namespace quillfern::desktop
