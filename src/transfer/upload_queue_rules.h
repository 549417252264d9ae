#pragma once

#include "transfer/upload_job.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>

// What the upload queue decides, without the queue: pure functions but for `withoutFolders`.
namespace quiv {

// What is on a disk of ours.
QList<QUrl> localFiles(const QList<QUrl>& urls);
// Asks the disk, so this is for a disk thread.
QList<QUrl> withoutFolders(const QList<QUrl>& urls);

struct PickedFiles {
    QList<UploadJob> jobs; // with fresh ids
    int unsupported = 0;
};
PickedFiles pickedFiles(const QList<QUrl>& urls);

// The jobs whose names are not among these upload name keys, each name once.
QList<UploadJob> filteredDuplicateUploadJobs(const QList<UploadJob>& jobs,
                                             const QSet<QString>& takenKeys);

// "Queued 2 upload(s), 1 duplicate upload(s) skipped, skipped 3 unsupported file(s)".
QString queuedMessage(qsizetype added, qsizetype duplicates, qsizetype unsupported);

// The match keys of every name that is being uploaded to this TV or waits for it.
QSet<QString> uploadMatchKeys(const QList<UploadListItem>& items, const QString& endpointKey);

// "Upload queue finished: 2 uploaded, 1 failed".
QString queueFinishedMessage(int uploaded, int failed);

} // namespace quiv
