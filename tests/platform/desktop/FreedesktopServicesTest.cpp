#include "platform/desktop/FreedesktopServices.h"

#include "platform/system/NativePath.h"
#include "support/Paths.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QThread>
#include <gtest/gtest.h>

namespace quillfern::desktop {
namespace {

/// A file manager that records the requests it gets.
class FakeFileManager final : public QDBusVirtualObject
{
  public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        EXPECT_EQ(message.interface(), QStringLiteral("org.freedesktop.FileManager1"));
        EXPECT_EQ(message.signature(), QStringLiteral("ass"));
        calls.append(message.member() + u' ' + message.arguments().value(0).toStringList().join(u' '));
        connection.send(refuses ? message.createErrorReply(QDBusError::Failed, QStringLiteral("no"))
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
        ASSERT_TRUE(
            theirs_.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager_));
        ASSERT_TRUE(theirs_.registerService(QStringLiteral("org.freedesktop.FileManager1")));
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
    desktop.reveal(asPaths({QStringLiteral("/a/one 1.pdf"), pathText("/b/latin\xE9.pdf")}));
    desktop.showProperties(asPaths({QStringLiteral("/a/one 1.pdf")}));
    desktop.reveal({}); // without files, no request is sent
    await(2);
    EXPECT_EQ(manager_.calls,
              (QStringList{QStringLiteral("ShowItems file:///a/one%201.pdf file:///b/latin%E9.pdf"),
                           QStringLiteral("ShowItemProperties file:///a/one%201.pdf")}));
    EXPECT_TRUE(opened_.isEmpty());
}

TEST_F(Desktop, WithoutAFileManagerEachFolderIsOpenedOnce)
{
    auto desktop = services();
    desktop.reveal(
        asPaths({QStringLiteral("/a/1.pdf"), QStringLiteral("/a/2.pdf"), QStringLiteral("/b/3.pdf")}));
    await(2);
    EXPECT_EQ(opened_, (QStringList{QStringLiteral("file:///a"), QStringLiteral("file:///b")}));
}

TEST_F(Desktop, AFileManagerThatRefusesIsReplacedByTheFolder)
{
    startFileManager();
    manager_.refuses = true;
    auto desktop = services();
    desktop.showProperties(asPaths({QStringLiteral("/a/1.pdf")}));
    await(2);
    EXPECT_EQ(opened_, QStringList{QStringLiteral("file:///a")});
}

TEST_F(Desktop, AWorkerOpensThroughTheMainThread)
{
    auto desktop = services();
    const std::unique_ptr<QThread> worker(
        QThread::create([&] { desktop.open(asPath(QStringLiteral("/out/a b.pdf"))); }));
    worker->start();
    worker->wait();
    EXPECT_TRUE(opened_.isEmpty());
    await(1);
    EXPECT_EQ(opened_, QStringList{QStringLiteral("file:///out/a%20b.pdf")});
}

} // namespace
} // namespace quillfern::desktop
