#include "platform/desktop/SingleInstance.h"

#include "platform/system/NativePath.h"
#include "support/Paths.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QThread>

namespace quillfern::desktop {
namespace {

const QString service = u"org.orvane.test"_s;

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
        QDBusMessage message = QDBusMessage::createMethodCall(
            service, u"/org/orvane/test"_s, u"org.freedesktop.Application"_s, QString::fromLatin1(method));
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
        {u"/a/one 1.pdf"_s, u"/a/100%25#?.pdf"_s, QString::fromUtf8("/ä/日本\U0001F600")},
        {pathText("/b/latin\xE9.pdf"), pathText("/\xFF\xC3/x"), u"/back\\slash"_s},
    };
    elsewhere([&] {
        SingleInstance second(theirs_, service);
        EXPECT_FALSE(second.isFirst());
        for (const QStringList& paths : requests)
            EXPECT_TRUE(second.handOver(asPaths(paths), u"token %1"_s.arg(paths.size())));
    });
    EXPECT_EQ(opened_, requests);
    EXPECT_EQ(tokens_.value(1), u"token 3"_s);
}

TEST_F(Instances, OnlyAbsolutePathsOfThisMachineAreTaken)
{
    SingleInstance first(ours_, service);
    listen(first);
    const QStringList uris = {u"file:///a.pdf"_s,
                              u"file:b.pdf"_s,
                              u"b.pdf"_s,
                              u"smb://host/c.pdf"_s,
                              u"file:///zero%00.pdf"_s,
                              QString(),
                              u"file:///"_s + QString(20'000, u'x')};
    EXPECT_EQ(answer(request("Open", {uris, QVariantMap()})), QDBusMessage::ReplyMessage);
    EXPECT_EQ(opened_, QList<QStringList>{QStringList{u"/a.pdf"_s}});

    const QStringList tooMany(100'001, u"file:///a"_s);
    EXPECT_EQ(answer(request("Open", {tooMany, QVariantMap()})), QDBusMessage::ErrorMessage);
    EXPECT_EQ(answer(request("ActivateAction", {u"quit"_s, QVariantList(), QVariantMap()})),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(opened_.size(), 1);
}

TEST_F(Instances, OneThatDoesNotAnswerIsSucceeded)
{
    auto first = std::make_unique<SingleInstance>(ours_, service);
    SingleInstance second(theirs_, service, 50);
    EXPECT_FALSE(second.handOver(asPaths({u"/a.pdf"_s}))) << "nobody serves the first one's events";
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
    const QDBusConnection none = QDBusConnection::connectToBus(u"unix:path=/nonexistent/bus"_s, u"none"_s);
    SingleInstance instance(none, service);
    EXPECT_FALSE(instance.handOver(asPaths({u"/a.pdf"_s})));
    QDBusConnection::disconnectFromBus(u"none"_s);
}

} // namespace
} // namespace quillfern::desktop
