#include "framework/qt/kit/shell_open.h"

#include "framework/core/guarded_call.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <system_error>

namespace {

const QString INTERFACE = QStringLiteral("org.freedesktop.Application");

// What a desktop adds to its requests.
const QString STARTUP_ID = QStringLiteral("desktop-startup-id");
const QString ACTIVATION_TOKEN = QStringLiteral("activation-token");

QVariantMap ToPlatformData(const StartupToken& token) {
    QVariantMap data;
    const auto add = [&](const QString& key, const std::string& strValue) {
        if (!strValue.empty()) data[key] = QString::fromStdString(strValue);
    };
    add(STARTUP_ID, token.strStartupId);
    add(ACTIVATION_TOKEN, token.strActivationToken);
    return data;
}

StartupToken FromPlatformData(const QVariantMap& data) {
    return {data[STARTUP_ID].toString().toStdString(), data[ACTIVATION_TOKEN].toString().toStdString()};
}

QString ObjectPath(const std::string& strName) {
    return u'/' + QString::fromStdString(strName).replace(u'.', u'/');
}

// What the toolkit offers on the bus in the name of the object that this is attached to. A request is
// answered at once: what it leads to can take as long as the user likes.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    ApplicationAdaptor(QObject& object, ShellOpen::OnRequest onRequest)
        : QDBusAbstractAdaptor(&object), m_onRequest(std::move(onRequest)) {}

  public slots:
    // The names are those of the bus; the last argument is what the caller's desktop adds.
    void Activate(const QVariantMap& platformData) { Pass({}, platformData); }
    void Open(const QStringList& uris, const QVariantMap& platformData) { Pass(uris, platformData); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&,
                        const QDBusMessage& message) {
        message.setDelayedReply(true);
        QDBusConnection::sessionBus().send(
            message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such action")));
    }

  private:
    void Pass(const QStringList& uris, const QVariantMap& platformData) {
        ShellRequest request;
        for (const QString& uri : uris) request.uris.push_back(uri.toStdString());
        request.token = FromPlatformData(platformData);
        AfxGuardedCall([&] { m_onRequest(request); });
    }

    ShellOpen::OnRequest m_onRequest;
};

bool HandOverOn(const QDBusConnection& bus, const std::string& strName, const ShellRequest& request) {
    if (!bus.isConnected()) return false;
    QStringList words;
    for (const std::string& uri : request.uris) words.append(QString::fromStdString(uri));
    const auto findOwner = [&] {
        return bus.interface()->serviceOwner(QString::fromStdString(strName)).value();
    };
    for (QString owner = findOwner(); !owner.isEmpty() && owner != bus.baseService();) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            owner, ObjectPath(strName), INTERFACE,
            words.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
        if (!words.isEmpty()) call << words;
        call << ToPlatformData(request.token);
        const QDBusMessage reply = bus.call(call);
        if (reply.type() == QDBusMessage::ReplyMessage) return true;
        // An owner that is still there is busy, and finds the request when it has time.
        const QString before = std::exchange(owner, findOwner());
        if (owner == before) return reply.errorName() == QDBusError::errorString(QDBusError::NoReply);
    }
    return false;
}

// A start that hangs does not keep the file from opening, and one that is only slow finds this copy.
constexpr int START_TIMEOUT = 2000;  // milliseconds

// The bus itself starts a copy without files, and waits until that owns the name: were it to ask for another
// one, both would wait.
bool StartOwner(const QDBusConnection& bus, const std::string& strName, const ShellRequest& request) {
    if (!bus.isConnected() || request.uris.empty()) return false;
    bus.interface()->setTimeout(START_TIMEOUT);
    return bus.interface()->startService(QString::fromStdString(strName)).isValid();
}

}  // namespace

ShellOpen::ShellOpen(const std::string& strName, OnRequest onRequest)
    : m_strName(strName), m_pObject(std::make_unique<QObject>()) {
    new ApplicationAdaptor(*m_pObject, std::move(onRequest));
    try {
        m_asking = std::thread([this] { AskForName(); });
    } catch (const std::system_error&) {
        // No more threads can be had. Nothing comes in, as without a bus.
    }
}

ShellOpen::~ShellOpen() {
    WaitForBus();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.interface()->unregisterService(QString::fromStdString(m_strName));
    bus.unregisterObject(ObjectPath(m_strName));
}

void ShellOpen::AskForName() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // Whoever owns the name can be called.
    bus.registerObject(ObjectPath(m_strName), m_pObject.get());
    bus.interface()->registerService(QString::fromStdString(m_strName),
                                     QDBusConnectionInterface::QueueService);
}

void ShellOpen::WaitForBus() {
    if (m_asking.joinable()) m_asking.join();
}

bool ShellOpen::HandOver(const ShellRequest& request) {
    WaitForBus();
    return HandOverOn(QDBusConnection::sessionBus(), m_strName, request);
}

// On a connection of its own: the program's one outlives this, and belongs to whoever listens.
bool AfxHandOver(const std::string& strName, const ShellRequest& request) {
    const QString connection = QStringLiteral("hand over");
    const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection);
    const bool handed = HandOverOn(bus, strName, request) ||
                        (StartOwner(bus, strName, request) && HandOverOn(bus, strName, request));
    QDBusConnection::disconnectFromBus(connection);
    return handed;
}

#include "shell_open.moc"
