#include "ui/presenters/file_group_row_state.h"

#include "transfer/deletion.h"
#include "transfer/upload_names.h"
#include "ui/display_format.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

bool isNowOnTV(const FileGroup& group, const WindowState& state) {
    return group.video && state.playback && state.playback->currentVideoName == group.video->name;
}

// Whether the TV has not answered to a command that plays, pauses or resumes this video.
bool isPlayWaiting(const FileGroup& group, const WindowState& state) {
    return group.video && std::ranges::any_of(state.pendingCommands, [&](const auto& each) {
               return each.command == u"play"_s
                          ? each.name == group.video->name
                          : (each.command == u"pause"_s || each.command == u"resume"_s) &&
                                isNowOnTV(group, state);
           });
}

bool isUsbConnected(const WindowState& state) {
    return state.content.usbStorage && state.content.usbStorage->isConnected;
}

bool isSamePlaybackForRows(const std::optional<PlaybackResponse>& a,
                           const std::optional<PlaybackResponse>& b) {
    if (!a || !b)
        return a.has_value() == b.has_value();
    return a->currentVideoName == b->currentVideoName && a->isPlaying == b->isPlaying &&
           a->subtitleTracks == b->subtitleTracks;
}

bool isMoveInProgress(const FileGroup& group, const MoveState& move) {
    const QString name = group.video ? group.video->name : QString();
    return move.isMovingFile && name.compare(move.currentMoveFileName, Qt::CaseInsensitive) == 0;
}

bool isDownloadInProgress(const FileGroup& group, const WindowState& window) {
    return isOfSelectedTv(window.download, window) &&
           std::ranges::any_of(filesOf(group), [&](const auto& file) {
               return uploadNamesMatch(file.name, window.download.currentDownloadFileName);
           });
}

} // namespace

bool isWaiting(const FileGroup& group, FileRequest::Kind kind, const WindowState& state) {
    return !state.pendingFiles.isEmpty() &&
           std::ranges::any_of(filesOf(group), [&](const RemoteFile& file) {
               return state.pendingFiles.contains({kind, selectedTvKey(state), file.name});
           });
}

bool isUploadInProgress(const FileGroup& group, const QSet<QString>& uploadKeys) {
    return !uploadKeys.isEmpty() &&
           std::ranges::any_of(filesOf(group), [&](const RemoteFile& file) {
               return uploadKeys.contains(uploadMatchKey(file.name));
           });
}

bool isSameForRows(const WindowState& a, const WindowState& b) {
    return isSamePlaybackForRows(a.playback, b.playback) && a.move == b.move &&
           isUsbConnected(a) == isUsbConnected(b) && a.download == b.download &&
           a.thumbnails == b.thumbnails && a.isReachable == b.isReachable &&
           a.pendingCommands == b.pendingCommands && a.pendingFiles == b.pendingFiles;
}

FileGroupRowState fileGroupRowState(const LibraryRow& row, const WindowState& window,
                                    const QSet<QString>& uploadKeys) {
    const FileGroup& group = row.group;
    const bool isOnTV = isNowOnTV(group, window);
    const bool isPlaying = isOnTV && window.playback->isPlaying;
    const bool goesToUsb = otherStorage(row.storageLocation) == "USB"_L1;
    FileGroupRowState state;
    state.title = displayText(group.title);
    state.subtitleText = subtitleCountText(group, window.playback);
    state.storageBadge = storageLocationBadge(row.storageLocation);
    if (isOnTV) {
        state.playbackText = isPlaying ? u"Playing"_s : u"Paused"_s;
        state.playbackSymbol = isPlaying ? u"waveform"_s : u"pause.circle"_s;
    }
    state.hasVideo = group.video.has_value();
    state.playSymbol = isPlaying ? u"pause.fill"_s : u"play.fill"_s;
    state.moveTitle = goesToUsb ? u"Move to USB"_s : u"Move to Internal"_s;
    state.isUploading = isUploadInProgress(group, uploadKeys);
    const bool isAtRest = window.isReachable && !state.isUploading;
    state.canPlay = state.hasVideo && isAtRest;
    state.isPlayWaiting = isPlayWaiting(group, window);
    state.isMoveWaiting = isWaiting(group, FileRequest::Kind::Move, window);
    state.isDownloadWaiting = isWaiting(group, FileRequest::Kind::Download, window);
    state.isDeleteWaiting = isWaiting(group, FileRequest::Kind::Deletion, window);
    state.canMove = state.hasVideo && window.isReachable && !window.move.isMovingFile &&
                    (!goesToUsb || isUsbConnected(window));
    state.canDelete = isAtRest;
    state.isDimmed = !window.isReachable;
    state.isMoving = isMoveInProgress(group, window.move);
    if (state.isMoving) {
        state.moveFraction = window.move.moveProgress;
        state.movePercentText = formatPercent(window.move.moveProgress);
    }
    state.canDownload = isAtRest && !filesOf(group).isEmpty();
    state.isDownloading = isDownloadInProgress(group, window);
    if (state.isDownloading) {
        state.downloadFraction = std::clamp(window.download.currentDownloadProgress, 0.0, 1.0);
        state.downloadPercentText = formatPercent(state.downloadFraction);
    }
    if (group.video && window.thumbnails)
        state.thumbnailURL = thumbnailURLForVideo(*window.thumbnails, group.video->name);
    return state;
}

} // namespace quiv
