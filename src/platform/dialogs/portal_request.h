#pragma once

#include "platform/async/promise.h"
#include "platform/dialogs/file_dialogs.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <chrono>

class QDBusPendingCallWatcher;

namespace quiv {

// One dialog of the desktop portal: made, it opens; destroyed, it closes.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    // Within `deadline` the portal has to say that it has a file chooser and opens the dialog.
    PortalRequest(const QDBusConnection& bus, const FileDialogRequest& request,
                  const QString& parentWindow, std::chrono::milliseconds deadline);
    ~PortalRequest() override;

    Promise<FileDialogAnswer>& answer() { return m_answer; }

private Q_SLOTS:
    void respond(uint response, const QVariantMap& results);

private:
    QDBusPendingCallWatcher* send(const QDBusMessage& call);
    void listen(const QString& path);
    void opened(QDBusPendingCallWatcher* opening);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QDeadlineTimer m_deadline;
    QString m_path;
    bool m_hasEnded = true; // is true before the dialog is asked for, too
    Promise<FileDialogAnswer> m_answer;
};

} // namespace quiv
