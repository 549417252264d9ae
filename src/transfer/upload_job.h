#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace quiv {

// One file waiting to be uploaded.
struct UploadJob {
    QString id; // a UUID in upper-case text form; names the job, its row and its upload
    QUrl sourceURL;
    QString remoteName; // what the TV is asked to store it as

    bool operator==(const UploadJob&) const = default;
};

enum class UploadListItemState {
    Queued,
    Waiting, // it is its turn, but its TV cannot take it yet
    Uploading,
    Failed, // stays until the user removes it or has it tried again
};

// One row of the upload list.
struct UploadListItem {
    QString id; // the job's
    QString fileName;
    QString tvKey; // the endpointKey of the TV it goes to
    QString tvName;
    UploadListItemState state = UploadListItemState::Queued;
    double progress = 0; // 0 to 1
    double speedBytesPerSecond = 0;
    QString reason{}; // why it waits or has failed

    bool operator==(const UploadListItem&) const = default;
};

} // namespace quiv
