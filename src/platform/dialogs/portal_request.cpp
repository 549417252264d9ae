#include "platform/dialogs/portal_request.h"

#include "platform/dialogs/portal_filter.h"
#include "platform/uuid.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// Names and shapes are those of the XDG desktop portal's documentation.
const auto Service = u"org.freedesktop.portal.Desktop"_s;
const auto Path = u"/org/freedesktop/portal/desktop"_s;
const auto ChooserInterface = u"org.freedesktop.portal.FileChooser"_s;
const auto RequestInterface = u"org.freedesktop.portal.Request"_s;
const auto ResponseSignal = u"Response"_s;
constexpr uint Succeeded = 0;
constexpr uint PatternByName = 0;

// Where the portal says how a request of this connection ended.
QString requestPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return Path + u"/request/"_s + sender + u'/' + token;
}

// "*.[mM][kK][vV]": the portal's patterns tell letters of either case apart.
QString patternOf(const QString& extension) {
    QString pattern = u"*."_s;
    for (const QChar letter : extension)
        pattern += u'[' + letter.toLower() + letter.toUpper() + u']';
    return pattern;
}

PortalFilter portalFilter(const FileFilter& filter) {
    PortalFilter made{filter.name, {}};
    for (const QString& extension : filter.extensions)
        made.patterns.append({PatternByName, patternOf(extension)});
    if (made.patterns.isEmpty())
        made.patterns.append({PatternByName, u"*"_s});
    return made;
}

QVariantMap optionsOf(const FileDialogRequest& request, const QString& token) {
    QVariantMap options{
        {u"handle_token"_s, token}, {u"accept_label"_s, request.acceptLabel}, {u"modal"_s, true}};
    if (request.purpose == FileDialogRequest::Purpose::Save)
        options.insert(u"current_name"_s, request.proposedName);
    if (!request.folder.isEmpty())
        options.insert(u"current_folder"_s, request.folder.toLocal8Bit() + '\0');
    if (!request.filters.isEmpty()) {
        QList<PortalFilter> filters;
        for (const FileFilter& each : request.filters)
            filters.append(portalFilter(each));
        options.insert(u"filters"_s, QVariant::fromValue(filters));
        options.insert(u"current_filter"_s, QVariant::fromValue(filters.constFirst()));
    }
    if (request.purpose == FileDialogRequest::Purpose::OpenSeveral)
        options.insert(u"multiple"_s, true);
    if (request.purpose == FileDialogRequest::Purpose::Folder)
        options.insert(u"directory"_s, true);
    return options;
}

void registerTypes() {
    qDBusRegisterMetaType<PortalPattern>();
    qDBusRegisterMetaType<QList<PortalPattern>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
}

} // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, const FileDialogRequest& request,
                             const QString& parentWindow, std::chrono::milliseconds deadline)
    : m_bus(bus), m_watcher(Service, m_bus), m_deadline(deadline) {
    registerTypes();
    const QString token = u"quiv_"_s + randomUuid().remove(u'-');
    listen(requestPath(m_bus, token)); // before the call: the end may come before its reply
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { m_answer.resolve(std::nullopt); });
    const bool saves = request.purpose == FileDialogRequest::Purpose::Save;
    QDBusMessage call = QDBusMessage::createMethodCall(Service, Path, ChooserInterface,
                                                       saves ? u"SaveFile"_s : u"OpenFile"_s);
    call << parentWindow << request.title << optionsOf(request, token);
    // A portal without a file chooser may keep a dialog's call waiting, but not this question.
    QDBusMessage question = QDBusMessage::createMethodCall(
        Service, Path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << ChooserInterface << u"version"_s;
    auto* asking = send(question);
    connect(asking, &QDBusPendingCallWatcher::finished, this, [this, asking, call] {
        if (asking->isError())
            return m_answer.resolve(std::nullopt);
        m_hasEnded = false;
        connect(send(call), &QDBusPendingCallWatcher::finished, this, &PortalRequest::opened);
    });
}

// Gives the call what is left of the deadline.
QDBusPendingCallWatcher* PortalRequest::send(const QDBusMessage& call) {
    const int left = std::max(1, static_cast<int>(m_deadline.remainingTime()));
    return new QDBusPendingCallWatcher(m_bus.asyncCall(call, left), this);
}

PortalRequest::~PortalRequest() {
    if (m_hasEnded)
        return;
    QDBusMessage close =
        QDBusMessage::createMethodCall(Service, m_path, RequestInterface, u"Close"_s);
    close.setAutoStartService(false);
    m_bus.send(close);
}

void PortalRequest::respond(uint response, const QVariantMap& results) {
    m_hasEnded = true;
    QList<QUrl> files;
    if (response == Succeeded)
        files = QUrl::fromStringList(results.value(u"uris"_s).toStringList());
    m_answer.resolve(files); // desktops report Escape as a failure, too
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
        m_answer.resolve(std::nullopt);
    else if (reply.value().path() != m_path) // portals before 0.9 choose their own
        listen(reply.value().path());
}

} // namespace quiv
