#pragma once

#include "library/library_content.h"
#include "net/tv_endpoint.h"
#include "net/wire_records.h"
#include "transfer/upload_job.h"

#include <QString>

namespace quiv {

using namespace Qt::StringLiterals;

inline TVEndpoint sampleTv(const QString& name, const QString& host, int port = 8080) {
    TVEndpoint tv;
    tv.name = name;
    tv.host = host;
    tv.port = port;
    return tv;
}

inline const TVEndpoint Bedroom = sampleTv(u"Bedroom"_s, u"10.0.0.2"_s);
inline const TVEndpoint Kitchen = sampleTv(u"Kitchen"_s, u"10.0.0.3"_s);

inline UploadListItem sampleUpload(const QString& id, const QString& name, const TVEndpoint& tv) {
    UploadListItem item;
    item.id = id;
    item.fileName = name;
    item.tvKey = endpointKey(tv);
    item.tvName = tv.name;
    return item;
}

inline LibraryRow sampleRow(const QString& name, const QString& title) {
    LibraryRow row;
    row.group.id = name;
    row.group.title = title;
    row.group.video = RemoteFile{name, u"VIDEO"_s, 1'000'000, std::nullopt};
    row.searchKey = title.toLower() + u'\n' + name.toLower();
    return row;
}

// Rows "video 0", "video 1", ...
inline QList<LibraryRow> sampleRows(int count) {
    QList<LibraryRow> rows;
    rows.reserve(count);
    for (int number = 0; number < count; ++number) {
        const QString title = u"video "_s + QString::number(number);
        rows.append(sampleRow(title + u".mkv"_s, title));
    }
    return rows;
}

inline PlaybackResponse playingVideo(const char* name = "a.mkv", std::int64_t positionMs = 0,
                                     std::int64_t durationMs = 7'200'000) {
    PlaybackResponse playback;
    playback.currentVideoName = QString::fromLatin1(name);
    playback.isPlaying = true;
    playback.positionMs = positionMs;
    playback.durationMs = durationMs;
    return playback;
}

} // namespace quiv
