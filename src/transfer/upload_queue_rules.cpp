#include "transfer/upload_queue_rules.h"

#include "platform/uuid.h"
#include "transfer/upload_names.h"

#include <QFileInfo>
#include <QStringList>

namespace quiv {

using namespace Qt::StringLiterals;

QList<QUrl> localFiles(const QList<QUrl>& urls) {
    QList<QUrl> files = urls;
    files.removeIf([](const QUrl& url) { return !url.isLocalFile(); });
    return files;
}

QList<QUrl> withoutFolders(const QList<QUrl>& urls) {
    QList<QUrl> files = urls;
    files.removeIf([](const QUrl& url) { return QFileInfo(url.toLocalFile()).isDir(); });
    return files;
}

PickedFiles pickedFiles(const QList<QUrl>& urls) {
    PickedFiles picked;
    for (const QUrl& url : urls) {
        const QString name = url.fileName();
        if (hasSupportedVideoExtension(name) || hasSupportedSubtitleExtension(name))
            picked.jobs.append({randomUuid().toUpper(), url, name});
        else
            ++picked.unsupported;
    }
    return picked;
}

QList<UploadJob> filteredDuplicateUploadJobs(const QList<UploadJob>& jobs,
                                             const QSet<QString>& takenKeys) {
    QSet<QString> taken = takenKeys;
    QList<UploadJob> kept;
    for (const UploadJob& job : jobs) {
        const QString key = uploadNameKey(job.remoteName);
        if (key.isEmpty() || taken.contains(key))
            continue;
        taken.insert(key);
        kept.append(job);
    }
    return kept;
}

QString queuedMessage(qsizetype added, qsizetype duplicates, qsizetype unsupported) {
    if (added < 1 && unsupported < 1)
        return u"All selected files are already uploading or queued"_s;
    QStringList parts;
    if (added >= 1)
        parts.append(u"Queued %1 upload(s)"_s.arg(added));
    if (duplicates >= 1)
        parts.append(u"%1 duplicate upload(s) skipped"_s.arg(duplicates));
    if (unsupported >= 1)
        parts.append(u"skipped %1 unsupported file(s)"_s.arg(unsupported));
    return parts.join(u", "_s);
}

QSet<QString> uploadMatchKeys(const QList<UploadListItem>& items, const QString& endpointKey) {
    QSet<QString> keys;
    for (const UploadListItem& item : items) {
        if (item.tvKey == endpointKey && item.state != UploadListItemState::Failed)
            keys.insert(uploadMatchKey(item.fileName));
    }
    keys.remove(QString());
    return keys;
}

QString queueFinishedMessage(int uploaded, int failed) {
    const QString message = u"Upload queue finished: %1 uploaded"_s.arg(uploaded);
    return failed == 0 ? message : message + u", %1 failed"_s.arg(failed);
}

} // namespace quiv
