#include "platform/desktop/dbus_file_manager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QProcess>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr int AnswerTimeoutMs = 5000; // the bus may have to start the file manager

void openFolderOf(const QUrl& file) {
    QProcess::startDetached(u"xdg-open"_s, {QFileInfo(file.toLocalFile()).absolutePath()});
}

} // namespace

void DBusFileManager::show(const QUrl& file) {
    if (!file.isLocalFile())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList(file.toString(QUrl::FullyEncoded)) << QString();
    const auto answer = QDBusConnection::sessionBus().asyncCall(call, AnswerTimeoutMs);
    auto* watcher = new QDBusPendingCallWatcher(answer, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, file] {
        watcher->deleteLater();
        if (watcher->isError())
            openFolderOf(file);
    });
}

} // namespace quiv
