#include "framework/qt/kit/shell_open.h"

#include "framework/core/guarded_call.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <system_error>

namespace {

const QString INTERFACE = QStringLiteral("org.freedesktop.Application");

QString ObjectPath(const std::string& strName) {
    return u'/' + QString::fromStdString(strName).replace(u'.', u'/');
}

// What the toolkit offers on the bus in the name of the object that this is attached to. A request is
// answered at once: what it leads to can take as long as the user likes.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    ApplicationAdaptor(QObject& object, ShellOpen::Request request)
        : QDBusAbstractAdaptor(&object), m_request(std::move(request)) {}

  public slots:
    // The names are those of the bus; the last argument is what the caller's desktop adds.
    void Activate(const QVariantMap&) { Pass({}); }
    void Open(const QStringList& uris, const QVariantMap&) { Pass(uris); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&,
                        const QDBusMessage& message) {
        message.setDelayedReply(true);
        QDBusConnection::sessionBus().send(
            message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such action")));
    }

  private:
    void Pass(const QStringList& uris) {
        std::vector<std::string> passed;
        for (const QString& uri : uris) passed.push_back(uri.toStdString());
        AfxGuardedCall([&] { m_request(passed); });
    }

    ShellOpen::Request m_request;
};

}  // namespace

ShellOpen::ShellOpen(const std::string& strName, Request request)
    : m_strName(strName), m_pObject(std::make_unique<QObject>()) {
    new ApplicationAdaptor(*m_pObject, std::move(request));
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

bool ShellOpen::HandOver(const std::vector<std::string>& uris) {
    WaitForBus();
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    QStringList words;
    for (const std::string& uri : uris) words.append(QString::fromStdString(uri));
    const auto findOwner = [&] {
        return bus.interface()->serviceOwner(QString::fromStdString(m_strName)).value();
    };
    for (QString owner = findOwner(); !owner.isEmpty() && owner != bus.baseService();) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            owner, ObjectPath(m_strName), INTERFACE,
            words.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
        if (!words.isEmpty()) call << words;
        call << QVariantMap();
        const QDBusMessage reply = bus.call(call);
        if (reply.type() == QDBusMessage::ReplyMessage) return true;
        // An owner that is still there is busy, and finds the request when it has time.
        const QString before = std::exchange(owner, findOwner());
        if (owner == before) return reply.errorName() == QDBusError::errorString(QDBusError::NoReply);
    }
    return false;
}

#include "shell_open.moc"
