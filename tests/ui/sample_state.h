#pragma once

#include "library/library_content.h"
#include "net/tv_endpoint.h"
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

} // namespace quiv
