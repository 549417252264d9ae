#pragma once

#include <QString>

namespace quiv::simulator {

// Fills empty folders with media to try things on: short clips in several containers, one with two
// sound and two subtitle tracks, one filmed upright, one that is no video at all, subtitles that
// belong to a video and one that does not. Needs the ffmpeg program and a second or few.
//
// The files are made beside the folder and moved into it when all are there, so an interrupted run
// leaves no half ones. Returns a sentence for the user when something is missing, else an empty
// text. Leaves a folder that holds anything alone.
QString makeSampleMedia(const QString& mediaFolder);
QString makeSampleUsbMedia(const QString& usbFolder);

} // namespace quiv::simulator
