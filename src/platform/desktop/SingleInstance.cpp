#include "platform/desktop/SingleInstance.h"

#include "platform/system/LogLine.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <climits>

namespace quillfern::desktop {

namespace {

constexpr QLatin1String tokenKey("activation-token");
constexpr qsizetype mostFiles = 100'000;
constexpr qsizetype mostBytes = 32 << 20;           ///< of all URIs; a bus takes arrays of 64 MiB
constexpr qsizetype longestUri = 3 * PATH_MAX + 16; ///< every byte percent-encoded

bool isReasonable(const QStringList& uris)
{
    qsizetype bytes = 0;
    for (const QString& uri : uris)
        bytes += uri.size();
    return uris.size() <= mostFiles && bytes <= mostBytes;
}

QDBusMessage toBus(const QString& method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

} // namespace

/// The D-Bus interface of an instance. The methods' names and arguments are those of the standard.
class SingleInstance::Interface final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit Interface(SingleInstance& instance) : QDBusAbstractAdaptor(&instance), instance_(instance) {}

  public Q_SLOTS:
    void Activate(const QVariantMap& platformData, const QDBusMessage& message)
    {
        Open({}, platformData, message);
    }

    void Open(const QStringList& uris, const QVariantMap& platformData, const QDBusMessage& message)
    {
        if (instance_.hasLeft_) return refuse(message, QDBusError::Failed, "the program is ending");
        if (!isReasonable(uris)) return refuse(message, QDBusError::LimitsExceeded, "too many files");
        QList<FilePath> paths;
        for (const QString& uri : uris) {
            if (uri.size() > longestUri) continue;
            const auto path = FilePath::fromUrl(QUrl::fromEncoded(uri.toUtf8(), QUrl::StrictMode));
            if (!path.isEmpty()) paths.append(path);
        }
        Q_EMIT instance_.opened(paths, platformData.value(tokenKey).toString());
    }

    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&, const QDBusMessage& message)
    {
        refuse(message, QDBusError::InvalidArgs, "there is no such action");
    }

  private:
    void refuse(const QDBusMessage& message, QDBusError::ErrorType error, const char* reason)
    {
        message.setDelayedReply(true); // keeps Qt from sending a reply besides the one sent here
        instance_.bus_.send(message.createErrorReply(error, QString::fromLatin1(reason)));
    }

    SingleInstance& instance_;
};

SingleInstance::SingleInstance(QDBusConnection bus, QString service, int patienceMs)
    : bus_(std::move(bus)), service_(std::move(service)), patienceMs_(patienceMs)
{
    if (!bus_.isConnected()) return;
    new Interface(*this);
    // Registered before the name is taken, so that a process that sees the name can already call the object.
    bus_.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors);
    isFirst_ = takeName();
}

SingleInstance::~SingleInstance()
{
    leave();
}

QString SingleInstance::objectPath() const
{
    QString path = u'/' + service_;
    return path.replace(u'.', u'/');
}

bool SingleInstance::takeName()
{
    constexpr uint doNotQueue = 4;
    constexpr int primaryOwner = 1;
    QDBusMessage request = toBus(QStringLiteral("RequestName"));
    request << service_ << doNotQueue;
    return bus_.call(request, QDBus::Block, patienceMs_).arguments().value(0).toInt() == primaryOwner;
}

void SingleInstance::queueForName()
{
    QDBusMessage request = toBus(QStringLiteral("RequestName"));
    request << service_ << 0U;
    bus_.send(request);
}

bool SingleInstance::handOver(const QList<FilePath>& paths, const QString& activationToken)
{
    if (isFirst_ || !bus_.isConnected()) return false;
    QStringList uris;
    for (const FilePath& path : paths)
        uris.append(QString::fromLatin1(path.url().toEncoded()));
    if (send(uris, activationToken)) return true;
    queueForName();
    return false;
}

bool SingleInstance::send(const QStringList& uris, const QString& activationToken)
{
    if (!isReasonable(uris)) return false;
    QVariantMap platformData;
    if (!activationToken.isEmpty()) platformData.insert(tokenKey, activationToken);
    const QString method = uris.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open");
    QDBusMessage request = QDBusMessage::createMethodCall(
        service_, objectPath(), QStringLiteral("org.freedesktop.Application"), method);
    request.setAutoStartService(false);
    if (!uris.isEmpty()) request << uris;
    request << platformData;
    const QDBusMessage reply = bus_.call(request, QDBus::Block, patienceMs_);
    if (reply.type() == QDBusMessage::ReplyMessage) return true;
    logLine(QStringLiteral("the running instance was not reached: %1").arg(reply.errorMessage()));
    return false;
}

void SingleInstance::leave()
{
    if (std::exchange(hasLeft_, true) || !bus_.isConnected()) return;
    isFirst_ = false;
    QDBusMessage release = toBus(QStringLiteral("ReleaseName"));
    release << service_;
    bus_.send(release);
    bus_.unregisterObject(objectPath());
}

} // namespace quillfern::desktop

#include "SingleInstance.moc"
