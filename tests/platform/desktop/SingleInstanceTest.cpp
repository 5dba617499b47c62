#include "platform/desktop/SingleInstance.h"

#include "platform/system/NativePath.h"
#include "support/Paths.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QThread>
#include <gtest/gtest.h>

namespace quillfern::desktop {
namespace {

const QString service = QStringLiteral("org.orvane.test");

/// The first instance lives in the test's thread; calls to it are made from another thread, as they would
/// come from another process.
class Instances : public testing::Test
{
  protected:
    void SetUp() override { ASSERT_TRUE(ours_.isConnected() && theirs_.isConnected()); }

    void listen(SingleInstance& instance)
    {
        QObject::connect(&instance, &SingleInstance::opened, &instance,
                         [this](const QList<FilePath>& paths, const QString& token) {
                             opened_.append(textsOf(paths));
                             tokens_.append(token);
                         });
    }

    /// Runs `work` on another thread and serves events here until it is done.
    static void elsewhere(const std::function<void()>& work)
    {
        const std::unique_ptr<QThread> thread(QThread::create(work));
        thread->start();
        while (!thread->isFinished())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        thread->wait();
    }

    static QDBusMessage request(const char* method, const QVariantList& arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, QStringLiteral("/org/orvane/test"),
                                                              QStringLiteral("org.freedesktop.Application"),
                                                              QString::fromLatin1(method));
        message.setArguments(arguments);
        return message;
    }

    QDBusMessage::MessageType answer(const QDBusMessage& message)
    {
        QDBusMessage reply;
        elsewhere([&] { reply = theirs_.call(message); });
        return reply.type();
    }

    PrivateBus bus_;
    QDBusConnection ours_ = bus_.connect("ours");
    QDBusConnection theirs_ = bus_.connect("theirs");
    QList<QStringList> opened_;
    QStringList tokens_;
};

TEST_F(Instances, ALaterOneHandsItsFilesToTheFirst)
{
    SingleInstance first(ours_, service);
    listen(first);
    EXPECT_TRUE(first.isFirst());
    const QList<QStringList> requests = {
        {},
        {QStringLiteral("/a/one 1.pdf"), QStringLiteral("/a/100%25#?.pdf"),
         QString::fromUtf8("/ä/日本\U0001F600")},
        {pathText("/b/latin\xE9.pdf"), pathText("/\xFF\xC3/x"), QStringLiteral("/back\\slash")},
    };
    elsewhere([&] {
        SingleInstance second(theirs_, service);
        EXPECT_FALSE(second.isFirst());
        for (const QStringList& paths : requests)
            EXPECT_TRUE(second.handOver(asPaths(paths), QStringLiteral("token %1").arg(paths.size())));
    });
    EXPECT_EQ(opened_, requests);
    EXPECT_EQ(tokens_.value(1), QStringLiteral("token 3"));
}

TEST_F(Instances, OnlyAbsolutePathsOfThisMachineAreTaken)
{
    SingleInstance first(ours_, service);
    listen(first);
    const QStringList uris = {QStringLiteral("file:///a.pdf"),
                              QStringLiteral("file:b.pdf"),
                              QStringLiteral("b.pdf"),
                              QStringLiteral("smb://host/c.pdf"),
                              QStringLiteral("file:///zero%00.pdf"),
                              QString(),
                              QStringLiteral("file:///") + QString(20'000, u'x')};
    EXPECT_EQ(answer(request("Open", {uris, QVariantMap()})), QDBusMessage::ReplyMessage);
    EXPECT_EQ(opened_, QList<QStringList>{QStringList{QStringLiteral("/a.pdf")}});

    const QStringList tooMany(100'001, QStringLiteral("file:///a"));
    EXPECT_EQ(answer(request("Open", {tooMany, QVariantMap()})), QDBusMessage::ErrorMessage);
    EXPECT_EQ(answer(request("ActivateAction", {QStringLiteral("quit"), QVariantList(), QVariantMap()})),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(opened_.size(), 1);
}

TEST_F(Instances, OneThatDoesNotAnswerIsSucceeded)
{
    auto first = std::make_unique<SingleInstance>(ours_, service);
    SingleInstance second(theirs_, service, 50);
    EXPECT_FALSE(second.handOver(asPaths({QStringLiteral("/a.pdf")})))
        << "nobody serves the first one's events";
    listen(second);
    first.reset();
    elsewhere([&] {
        SingleInstance third(bus_.connect("third"), service);
        EXPECT_FALSE(third.isFirst());
        EXPECT_TRUE(third.handOver({}));
    });
    EXPECT_EQ(opened_.size(), 1);
}

TEST_F(Instances, OneThatIsLeavingTakesNothingMore)
{
    SingleInstance first(ours_, service);
    listen(first);
    QDBusPendingCall pending = theirs_.asyncCall(request("Activate", {QVariantMap()}));
    QThread::msleep(50); // the call now waits for the first instance, which serves no events
    first.leave();
    elsewhere([&] { pending.waitForFinished(); });
    EXPECT_TRUE(pending.isError());
    EXPECT_TRUE(opened_.isEmpty());
    EXPECT_TRUE(SingleInstance(theirs_, service).isFirst());
}

TEST(InstancesWithoutABus, RunByThemselves)
{
    const QDBusConnection none =
        QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"), QStringLiteral("none"));
    SingleInstance instance(none, service);
    EXPECT_FALSE(instance.handOver(asPaths({QStringLiteral("/a.pdf")})));
    QDBusConnection::disconnectFromBus(QStringLiteral("none"));
}

} // namespace
} // namespace quillfern::desktop
