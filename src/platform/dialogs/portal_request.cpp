#include "platform/dialogs/portal_request.h"

#include "platform/uuid.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace quiv {

namespace {

// Names and shapes are those of the XDG desktop portal's documentation.
const auto Service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto Path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto ChooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const auto RequestInterface = QStringLiteral("org.freedesktop.portal.Request");
const auto ResponseSignal = QStringLiteral("Response");
constexpr uint Succeeded = 0;
constexpr uint Cancelled = 1;

// Where the portal says how a request of this connection ended.
QString requestPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return Path + QStringLiteral("/request/") + sender + u'/' + token;
}

QVariantMap optionsOf(const FileDialogRequest& request, const QString& token) {
    QVariantMap options{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("accept_label"), request.acceptLabel},
                        {QStringLiteral("modal"), true}};
    if (request.purpose == FileDialogRequest::Purpose::Save)
        options.insert(QStringLiteral("current_name"), request.proposedName);
    if (request.purpose == FileDialogRequest::Purpose::OpenSeveral)
        options.insert(QStringLiteral("multiple"), true);
    return options;
}

} // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, const FileDialogRequest& request,
                             const QString& parentWindow, std::chrono::milliseconds patience)
    : m_bus(bus), m_watcher(Service, m_bus) {
    const QString token = QStringLiteral("quiv_") + randomUuid().remove(u'-');
    listen(requestPath(m_bus, token)); // before the call: the end may come before its reply
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { m_answer.give(std::nullopt); });
    const bool saves = request.purpose == FileDialogRequest::Purpose::Save;
    QDBusMessage call = QDBusMessage::createMethodCall(Service, Path, ChooserInterface,
                                                       saves ? QStringLiteral("SaveFile")
                                                             : QStringLiteral("OpenFile"));
    call << parentWindow << request.title << optionsOf(request, token);
    auto* opening = new QDBusPendingCallWatcher(
        m_bus.asyncCall(call, static_cast<int>(patience.count())), this);
    connect(opening, &QDBusPendingCallWatcher::finished, this, &PortalRequest::opened);
}

PortalRequest::~PortalRequest() {
    if (m_hasEnded)
        return;
    QDBusMessage close =
        QDBusMessage::createMethodCall(Service, m_path, RequestInterface, QStringLiteral("Close"));
    close.setAutoStartService(false);
    m_bus.send(close);
}

void PortalRequest::respond(uint response, const QVariantMap& results) {
    m_hasEnded = true;
    if (response == Cancelled)
        return m_answer.give(QList<QUrl>());
    if (response != Succeeded)
        return m_answer.give(std::nullopt);
    QList<QUrl> files;
    for (const QString& uri : results.value(QStringLiteral("uris")).toStringList()) {
        if (const QUrl file(uri); file.isLocalFile())
            files.append(file);
    }
    m_answer.give(files);
}

void PortalRequest::listen(const QString& path) {
    m_path = path;
    // From whoever it comes: the service may start only now, and nobody else knows the path.
    m_bus.connect(QString(), path, RequestInterface, ResponseSignal, this,
                  SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::opened(QDBusPendingCallWatcher* opening) {
    const QDBusPendingReply<QDBusObjectPath> reply = *opening;
    if (reply.isError())
        m_answer.give(std::nullopt);
    else if (reply.value().path() != m_path) // portals before 0.9 choose their own
        listen(reply.value().path());
}

} // namespace quiv
