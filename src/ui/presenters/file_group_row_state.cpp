#include "ui/presenters/file_group_row_state.h"

#include "transfer/deletion.h"
#include "transfer/upload_names.h"
#include "ui/display_format.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

bool isNowOnTV(const FileGroup& group, const RowContext& context) {
    return group.video && context.playback &&
           context.playback->currentVideoName == group.video->name;
}

bool isMoveInProgress(const FileGroup& group, const MoveState& move) {
    const QString name = group.video ? group.video->name : QString();
    return move.isMovingFile && name.compare(move.currentMoveFileName, Qt::CaseInsensitive) == 0;
}

bool isUploadInProgress(const FileGroup& group, const QSet<QString>& matchKeys) {
    return !matchKeys.isEmpty() && std::ranges::any_of(filesOf(group), [&](const RemoteFile& file) {
        return matchKeys.contains(uploadMatchKey(file.name));
    });
}

bool isDownloadInProgress(const FileGroup& group, const DownloadState& download) {
    return download.isDownloading && std::ranges::any_of(filesOf(group), [&](const auto& file) {
               return uploadNamesMatch(file.name, download.currentDownloadFileName);
           });
}

} // namespace

std::optional<PlaybackResponse> rowPlayback(const std::optional<PlaybackResponse>& playback) {
    if (!playback)
        return std::nullopt;
    PlaybackResponse shown;
    shown.currentVideoName = playback->currentVideoName;
    shown.isPlaying = playback->isPlaying;
    shown.subtitleTracks = playback->subtitleTracks;
    return shown;
}

FileGroupRowState fileGroupRowState(const LibraryRow& row, const RowContext& context) {
    const FileGroup& group = row.group;
    const bool isOnTV = isNowOnTV(group, context);
    const bool isPlaying = isOnTV && context.playback->isPlaying;
    const bool goesToUsb = otherStorage(row.storageLocation) == "USB"_L1;
    FileGroupRowState state;
    state.title = displayText(group.title);
    state.subtitleText = subtitleCountText(group, context.playback);
    state.storageBadge = storageLocationBadge(row.storageLocation);
    if (isOnTV) {
        state.playbackText = isPlaying ? u"Playing"_s : u"Paused"_s;
        state.playbackSymbol = isPlaying ? u"waveform"_s : u"pause.circle"_s;
    }
    state.hasVideo = group.video.has_value();
    state.playSymbol = isPlaying ? u"pause.fill"_s : u"play.fill"_s;
    state.moveTitle = goesToUsb ? u"Move to USB"_s : u"Move to Internal"_s;
    state.canMove =
        state.hasVideo && !context.move.isMovingFile && (!goesToUsb || context.isUsbConnected);
    state.isUploading = isUploadInProgress(group, context.uploadMatchKeys);
    state.isMoving = isMoveInProgress(group, context.move);
    if (state.isMoving) {
        state.moveFraction = context.move.moveProgress;
        state.movePercentText = formatPercent(context.move.moveProgress);
    }
    state.canDownload = !state.isUploading && !filesOf(group).isEmpty();
    state.isDownloading = isDownloadInProgress(group, context.download);
    if (state.isDownloading) {
        state.downloadFraction = std::clamp(context.download.currentDownloadProgress, 0.0, 1.0);
        state.downloadPercentText = formatPercent(state.downloadFraction);
    }
    if (group.video && context.thumbnails)
        state.thumbnailURL = thumbnailURLForVideo(*context.thumbnails, group.video->name);
    return state;
}

} // namespace quiv
