#pragma once

#include "library/library_content.h"
#include "library/thumbnail_url.h"
#include "net/network_problem.h"
#include "net/pairing.h"
#include "net/status_line.h"
#include "net/tv_endpoint.h"
#include "playback/local_playback.h"
#include "playback/playback_command.h"
#include "transfer/downloads.h"
#include "transfer/pending_files.h"
#include "transfer/storage_move.h"
#include "transfer/upload_job.h"

#include <QList>
#include <QSet>
#include <QString>

#include <cstdint>
#include <optional>

namespace quiv {

// Everything the window shows, at one instant. Cheap to copy: lists and texts are shared.
struct WindowState {
    QList<TVEndpoint> discoveredDevices;
    bool isSearching = false; // for TVs
    NetworkProblem networkProblem;
    std::optional<TVEndpoint> selectedDevice;
    bool isReachable = true; // the selected TV answers
    StatusMessage status;
    PairingState pairing;
    LibraryContent content;
    bool isLibraryLoading = false;
    QString libraryFailure; // why there is no listing; empty if there is one
    std::optional<PlaybackResponse> playback;
    QList<PlaybackCommand> pendingCommands; // that the TV has not answered
    std::uint64_t playbackReading = 0; // differs after every reading, even one that says the same
    LocalPlaybackState localPlayback;
    MoveState move;
    QSet<FileRequest> pendingFiles; // that a TV has not answered
    QList<UploadListItem> uploads;  // the current one first
    DownloadState download;
    std::optional<ThumbnailAddress> thumbnails;
};

// The endpointKey of the TV that is shown; empty without one.
inline QString selectedTvKey(const WindowState& state) {
    return state.selectedDevice ? endpointKey(*state.selectedDevice) : QString();
}

// Whether both states are about the same TV, perhaps by a newer record, or both about no TV.
inline bool isSameTv(const WindowState& a, const WindowState& b) {
    return selectedTvKey(a) == selectedTvKey(b);
}

// Whether the download is under way and comes from the TV that is shown.
inline bool isOfSelectedTv(const DownloadState& download, const WindowState& state) {
    return download.isDownloading && download.tvKey == selectedTvKey(state);
}

} // namespace quiv
