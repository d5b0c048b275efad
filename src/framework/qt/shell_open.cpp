#include "framework/qt/shell_open.h"

#include "framework/core/guarded_call.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace {

const QString INTERFACE = QStringLiteral("org.freedesktop.Application");

const QString PROPERTIES = QStringLiteral("org.freedesktop.DBus.Properties");

const QString INTROSPECTION = QStringLiteral(R"(  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
)");

QString ObjectPath(const std::string& strName) {
    return u'/' + QString::fromStdString(strName).replace(u'.', u'/');
}

}  // namespace

// Answers at once: what a request leads to can take as long as the user likes.
class ShellOpen::Node final : public QDBusVirtualObject {
  public:
    explicit Node(Request request) : m_request(std::move(request)) {}

    QString introspect(const QString&) const override { return INTROSPECTION; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() == PROPERTIES) return TellProperties(message, connection);
        if (!message.interface().isEmpty() && message.interface() != INTERFACE) return false;
        const QString call = message.member() + u'(' + message.signature() + u')';
        if (call == QStringLiteral("Open(asa{sv})") || call == QStringLiteral("Activate(a{sv})")) {
            std::vector<std::string> uris;
            if (message.member() == QStringLiteral("Open"))
                for (const QString& uri : message.arguments().first().toStringList())
                    uris.push_back(uri.toStdString());
            connection.send(message.createReply());
            AfxGuardedCall([&] { m_request(uris); });
            return true;
        }
        if (call != QStringLiteral("ActivateAction(sava{sv})")) return false;
        connection.send(
            message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such action")));
        return true;
    }

  private:
    // There are none, which is no reason to deny whoever asks for all of them.
    static bool TellProperties(const QDBusMessage& message, const QDBusConnection& connection) {
        const QString of = message.arguments().value(0).toString();
        if (message.member() != QStringLiteral("GetAll") || (!of.isEmpty() && of != INTERFACE)) return false;
        connection.send(message.createReply(QVariantMap()));
        return true;
    }

    Request m_request;
};

ShellOpen::ShellOpen(const std::string& strName, Request request)
    : m_strName(strName), m_pNode(std::make_unique<Node>(std::move(request))) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // Whoever owns the name can be called.
    bus.registerVirtualObject(ObjectPath(m_strName), m_pNode.get());
    bus.interface()->registerService(QString::fromStdString(m_strName),
                                     QDBusConnectionInterface::QueueService);
}

ShellOpen::~ShellOpen() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.interface()->unregisterService(QString::fromStdString(m_strName));
    bus.unregisterObject(ObjectPath(m_strName));
}

bool ShellOpen::HandOver(const std::vector<std::string>& uris) const {
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
