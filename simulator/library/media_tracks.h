#pragma once

#include <QJsonArray>
#include <QString>

#include <vector>

namespace quiv::simulator {

// A subtitle or audio track as the TV offers it.
struct MediaTrack {
    QString id;
    QString label;
    QString language; // is empty if not known

    bool operator==(const MediaTrack&) const = default;
};

// How long a video is and what can be chosen in it.
struct MediaDetails {
    qint64 durationMs = 0; // is 0 if not known
    std::vector<MediaTrack> audio;
    std::vector<MediaTrack> subtitles;
};

// Asks ffprobe; nothing is known of a file that it does not understand, or without it.
MediaDetails detailsOfFile(const QString& path);

// A subtitle file beside the video whose base name its own begins with.
MediaTrack sideTrack(const QString& fileName, const QString& videoBase, size_t number);

// The details of a video that is no file: an hour and a half, two languages, three subtitles.
MediaDetails madeUpDetails();

} // namespace quiv::simulator
