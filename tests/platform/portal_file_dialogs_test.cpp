#include "platform/dialogs/portal_file_dialogs.h"
#include "platform/dialogs/portal_filter.h"
#include "support/outcome.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString PortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString PortalService = u"org.freedesktop.portal.Desktop"_s;

QDBusConnection portalBus() {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
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
    Q_PROPERTY(uint version MEMBER version)

public:
    enum class Manner { Opens, Refuses, KeepsSilent };
    enum class HasChooser { Yes, No };

    explicit Portal(HasChooser hasChooser = HasChooser::Yes) {
        connect(&m_dialog, &PortalDialog::closed, this, [this] { calls.append("close"); });
        QDBusConnection::RegisterOptions exported = QDBusConnection::ExportAllSlots;
        exported.setFlag(QDBusConnection::ExportAllProperties, hasChooser == HasChooser::Yes);
        portalBus().registerObject(PortalPath, this, exported);
        portalBus().registerService(PortalService);
    }
    ~Portal() override {
        leave();
        portalBus().unregisterObject(PortalPath);
        portalBus().unregisterObject(m_handle.path());
    }
    void leave() { portalBus().unregisterService(PortalService); }
    void respond(uint response, const QStringList& uris = {}) {
        Q_EMIT m_dialog.Response(response, {{u"uris"_s, uris}});
    }

    Manner manner = Manner::Opens;
    uint version = 3;
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
        m_handle = QDBusObjectPath(PortalPath + u"/request/"_s + sender + u'/' +
                                   given.value(u"handle_token"_s).toString());
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
    explicit Asking(Purpose purpose, std::chrono::milliseconds deadline = 300ms)
        : dialogs([] { return u"x11:2a"_s; }, deadline), answer(dialogs.ask(request(purpose))) {}

    static FileDialogRequest request(Purpose purpose) {
        FileDialogRequest made(purpose, u"A title"_s, u"Take"_s, u"Name.mkv"_s);
        made.folder = u"/tmp"_s;
        made.filters = {{u"Videos"_s, {u"m2ts"_s, u"avi"_s}}, {u"All files"_s, {}}};
        return made;
    }

    QString ended() const {
        if (!answer.isDone())
            return u"open"_s;
        if (!answer.value())
            return u"none"_s;
        QStringList files;
        for (const QUrl& file : *answer.value())
            files.append(file.toLocalFile());
        return files.join(u',');
    }

    PortalFileDialogs dialogs;
    Outcome<QList<QUrl>> answer;
};

} // namespace

class PortalFileDialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theUsersChoiceIsTheAnswer() {
        Portal portal;
        Asking several(Purpose::OpenSeveral);
        QTRY_COMPARE(portal.calls, QByteArrayList{"open"});
        QCOMPARE(portal.parent, u"x11:2a"_s);
        QCOMPARE(portal.title, u"A title"_s);
        QCOMPARE(portal.options.value(u"multiple"_s), QVariant(true));
        QCOMPARE(portal.options.value(u"accept_label"_s).toString(), u"Take"_s);
        QCOMPARE(portal.options.value(u"current_folder"_s).toByteArray(), QByteArray("/tmp\0", 5));
        const auto filters = qdbus_cast<QList<PortalFilter>>(portal.options.value(u"filters"_s));
        QCOMPARE(filters.size(), 2);
        QCOMPARE(filters[0].patterns[0].pattern, u"*.[mM][22][tT][sS]"_s);
        QCOMPARE(filters[1].patterns[0].pattern, u"*"_s);
        portal.respond(0, {u"file:///tmp/a%20b.mkv"_s, u"file:///c"_s});
        QTRY_COMPARE(several.ended(), u"/tmp/a b.mkv,/c"_s);

        Asking one(Purpose::OpenOne);
        QTRY_COMPARE(portal.calls.size(), 2);
        QVERIFY(!portal.options.contains(u"multiple"_s));
        portal.respond(1);
        QTRY_COMPARE(one.ended(), QString());

        Asking save(Purpose::Save);
        QTRY_COMPARE(portal.calls.constLast(), "save");
        QCOMPARE(portal.options.value(u"current_name"_s).toString(), u"Name.mkv"_s);
        portal.respond(0, {u"file:///d.mkv"_s});
        QTRY_COMPARE(save.ended(), u"/d.mkv"_s);
        QVERIFY(!portal.calls.contains("close"));
    }

    void withoutAPortalThatOpensItThereIsNoDialog() {
        Asking nobody(Purpose::OpenOne);
        QTRY_COMPARE(nobody.ended(), u"none"_s);
        Portal portal;
        portal.manner = Portal::Manner::Refuses;
        Asking refused(Purpose::OpenOne);
        QTRY_COMPARE(refused.ended(), u"none"_s);
        portal.manner = Portal::Manner::Opens;
        Asking escaped(Purpose::OpenOne);
        QTRY_COMPARE(portal.calls.count("open"), 2);
        portal.respond(2); // Escape, with some desktops
        QTRY_COMPARE(escaped.ended(), QString());
        Asking left(Purpose::OpenOne);
        QTRY_COMPARE(portal.calls.count("open"), 3);
        portal.leave();
        QTRY_COMPARE(left.ended(), u"none"_s);
    }

    void aPortalWithoutAFileChooserGivesWayAtOnce() {
        Portal portal(Portal::HasChooser::No);
        portal.manner = Portal::Manner::KeepsSilent;
        Asking refused(Purpose::OpenOne, 1h);
        QTRY_COMPARE(refused.ended(), u"none"_s);
        QCOMPARE(portal.calls, QByteArrayList());
    }

    void aDialogThatComesTooLateIsClosed() {
        Portal portal;
        portal.manner = Portal::Manner::KeepsSilent;
        Asking late(Purpose::OpenOne);
        QTRY_COMPARE(late.ended(), u"none"_s);
        QTRY_COMPARE(portal.calls, QByteArrayList({"open", "close"}));
    }

    void aDialogNobodyWaitsForIsClosed() {
        Portal portal;
        {
            Asking dropped(Purpose::OpenOne);
            QTRY_COMPARE(portal.calls.size(), 1);
        }
        QTRY_COMPARE(portal.calls, QByteArrayList({"open", "close"}));
    }
};

QTEST_GUILESS_MAIN(PortalFileDialogsTest)
#include "portal_file_dialogs_test.moc"
