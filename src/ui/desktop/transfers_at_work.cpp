#include "ui/desktop/transfers_at_work.h"

#include "ui/display_format.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const UploadListItem* currentUpload(const WindowState& state) {
    const auto found =
        std::ranges::find(state.uploads, UploadListItemState::Uploading, &UploadListItem::state);
    return found == state.uploads.end() ? nullptr : &*found;
}

qsizetype unfinishedUploads(const WindowState& state) {
    return std::ranges::count_if(state.uploads, [](const UploadListItem& item) {
        return item.state != UploadListItemState::Failed;
    });
}

bool isFailure(const StatusMessage& outcome) {
    return outcome.kind == StatusMessage::Kind::Failure;
}

} // namespace

bool isMovingBytes(const WindowState& state) {
    return state.download.isDownloading || currentUpload(state);
}

std::optional<double> transferProgress(const WindowState& state) {
    const UploadListItem* upload = currentUpload(state);
    if (upload && state.download.isDownloading)
        return (upload->progress + state.download.currentDownloadProgress) / 2;
    if (upload)
        return upload->progress;
    if (state.download.isDownloading)
        return state.download.currentDownloadProgress;
    return std::nullopt;
}

QString transfersToBreakOff(const WindowState& state) {
    const qsizetype uploads = unfinishedUploads(state);
    const QString files = uploads == 1 ? u"1 upload is"_s : u"%1 uploads are"_s.arg(uploads);
    if (uploads > 0 && state.download.isDownloading)
        return files + u" not finished, and a download is under way. Quitting breaks them off."_s;
    if (uploads > 0)
        return files +
               u" not finished. Quitting breaks off what is under way and forgets the rest."_s;
    if (state.download.isDownloading)
        return u"A download is under way. Quitting breaks it off."_s;
    return {};
}

Notification uploadsNotification(const StatusMessage& outcome) {
    return {isFailure(outcome) ? u"Not everything was uploaded"_s : u"Uploads finished"_s,
            displayText(outcome.text)};
}

Notification downloadNotification(const StatusMessage& outcome) {
    return {isFailure(outcome) ? u"Download failed"_s : u"Download finished"_s,
            displayText(outcome.text), outcome.file.isEmpty() ? QString() : u"Show in folder"_s};
}

} // namespace quiv
