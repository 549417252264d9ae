#include "platform/dialogs/portal_file_dialogs.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QTest>

using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString PortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString PortalService = QStringLiteral("org.freedesktop.portal.Desktop");

QDBusConnection portalBus() {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
}

} // namespace

// One open dialog.
class PortalDialog : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public Q_SLOTS:
    void Close() { Q_EMIT closed(); }

Q_SIGNALS:
    void closed();
    void Response(uint response, const QVariantMap& results);
};

// A desktop's portal whose user is the test.
class Portal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")

public:
    enum class Manner { Opens, Refuses, KeepsSilent };

    Portal() {
        connect(&m_dialog, &PortalDialog::closed, this, [this] { calls.append("close"); });
        portalBus().registerObject(PortalPath, this, QDBusConnection::ExportAllSlots);
        portalBus().registerService(PortalService);
    }
    ~Portal() override {
        leave();
        portalBus().unregisterObject(PortalPath);
        portalBus().unregisterObject(m_handle.path());
    }
    void leave() { portalBus().unregisterService(PortalService); }
    void respond(uint response, const QStringList& uris = {}) {
        Q_EMIT m_dialog.Response(response, {{QStringLiteral("uris"), uris}});
    }

    Manner manner = Manner::Opens;
    QByteArrayList calls;
    QString parent;
    QString title;
    QVariantMap options;

public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString& window, const QString& text, const QVariantMap& given) {
        return open("open", window, text, given);
    }
    QDBusObjectPath SaveFile(const QString& window, const QString& text, const QVariantMap& given) {
        return open("save", window, text, given);
    }

private:
    QDBusObjectPath open(const char* call, const QString& window, const QString& text,
                         const QVariantMap& given) {
        calls.append(call);
        parent = window;
        title = text;
        options = given;
        if (manner == Manner::Refuses)
            sendErrorReply(QDBusError::Failed);
        if (manner == Manner::KeepsSilent)
            setDelayedReply(true);
        const QString sender = message().service().mid(1).replace(u'.', u'_');
        portalBus().unregisterObject(m_handle.path()); // signals come from one path
        m_handle = QDBusObjectPath(PortalPath + QStringLiteral("/request/") + sender + u'/' +
                                   given.value(QStringLiteral("handle_token")).toString());
        portalBus().registerObject(m_handle.path(), &m_dialog,
                                   QDBusConnection::ExportAllSlots |
                                       QDBusConnection::ExportAllSignals);
        return m_handle;
    }

    PortalDialog m_dialog;
    QDBusObjectPath m_handle;
};

namespace {

using Purpose = FileDialogRequest::Purpose;

// What was asked, and how it ended.
struct Asking {
    explicit Asking(Purpose purpose) : task(run(purpose)) {}

    Task<> run(Purpose purpose) {
        auto asking = dialogs.ask({purpose, QStringLiteral("A title"), QStringLiteral("Take"),
                                   QStringLiteral("Name.mkv")});
        answer = co_await std::move(asking);
    }
    QString ended() const {
        if (!task.isDone())
            return QStringLiteral("open");
        if (!answer)
            return QStringLiteral("none");
        QStringList files;
        for (const QUrl& file : *answer)
            files.append(file.toLocalFile());
        return files.join(u',');
    }

    PortalFileDialogs dialogs{[] { return QStringLiteral("x11:2a"); }, 300ms};
    FileDialogAnswer answer;
    Task<> task;
};

} // namespace

class PortalFileDialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theUsersChoiceIsTheAnswer() {
        Portal portal;
        Asking several(Purpose::OpenSeveral);
        QTRY_COMPARE(portal.calls, QByteArrayList{"open"});
        QCOMPARE(portal.parent, QStringLiteral("x11:2a"));
        QCOMPARE(portal.title, QStringLiteral("A title"));
        QCOMPARE(portal.options.value(QStringLiteral("multiple")), QVariant(true));
        QCOMPARE(portal.options.value(QStringLiteral("accept_label")).toString(),
                 QStringLiteral("Take"));
        portal.respond(0, {QStringLiteral("file:///tmp/a%20b.mkv"), QStringLiteral("file:///c")});
        QTRY_COMPARE(several.ended(), QStringLiteral("/tmp/a b.mkv,/c"));

        Asking one(Purpose::OpenOne);
        QTRY_COMPARE(portal.calls.size(), 2);
        QVERIFY(!portal.options.contains(QStringLiteral("multiple")));
        portal.respond(1);
        QTRY_COMPARE(one.ended(), QString());

        Asking save(Purpose::Save);
        QTRY_COMPARE(portal.calls.constLast(), "save");
        QCOMPARE(portal.options.value(QStringLiteral("current_name")).toString(),
                 QStringLiteral("Name.mkv"));
        portal.respond(0, {QStringLiteral("file:///d.mkv")});
        QTRY_COMPARE(save.ended(), QStringLiteral("/d.mkv"));
        QVERIFY(!portal.calls.contains("close"));
    }

    void withoutAPortalThatOpensItThereIsNoDialog() {
        const Asking nobody(Purpose::OpenOne);
        QTRY_COMPARE(nobody.ended(), QStringLiteral("none"));
        Portal portal;
        portal.manner = Portal::Manner::Refuses;
        const Asking refused(Purpose::OpenOne);
        QTRY_COMPARE(refused.ended(), QStringLiteral("none"));
        portal.manner = Portal::Manner::Opens;
        const Asking broken(Purpose::OpenOne);
        QTRY_COMPARE(portal.calls.count("open"), 2);
        portal.respond(2);
        QTRY_COMPARE(broken.ended(), QStringLiteral("none"));
        const Asking left(Purpose::OpenOne);
        QTRY_COMPARE(portal.calls.count("open"), 3);
        portal.leave();
        QTRY_COMPARE(left.ended(), QStringLiteral("none"));
    }

    void aDialogThatComesTooLateIsClosed() {
        Portal portal;
        portal.manner = Portal::Manner::KeepsSilent;
        const Asking late(Purpose::OpenOne);
        QTRY_COMPARE(late.ended(), QStringLiteral("none"));
        QTRY_COMPARE(portal.calls, QByteArrayList({"open", "close"}));
    }

    void aDialogNobodyWaitsForIsClosed() {
        Portal portal;
        {
            const Asking dropped(Purpose::OpenOne);
            QTRY_COMPARE(portal.calls.size(), 1);
        }
        QTRY_COMPARE(portal.calls, QByteArrayList({"open", "close"}));
    }
};

QTEST_GUILESS_MAIN(PortalFileDialogsTest)
#include "portal_file_dialogs_test.moc"
