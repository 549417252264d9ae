#include "simulator/endpoints/download_endpoints.h"

#include "simulator/endpoints/reply.h"

#include <QFile>
#include <QMimeDatabase>

#include <algorithm>
#include <memory>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

using httplib::ContentProvider;
using httplib::DataSink;
using httplib::Request;
using httplib::Response;

namespace {

constexpr size_t SliceBytes = 65'536;

ContentProvider bytesOf(std::shared_ptr<QFile> file) {
    return [file = std::move(file)](size_t offset, size_t length, DataSink& sink) {
        if (!file->seek(static_cast<qint64>(offset)))
            return false;
        const QByteArray slice = file->read(static_cast<qint64>(std::min(length, SliceBytes)));
        return !slice.isEmpty() && sink.write(slice.constData(), static_cast<size_t>(slice.size()));
    };
}

// Sends the bytes of a generated entry, as many as it is said to have.
ContentProvider madeUpBytes() {
    return [](size_t, size_t length, DataSink& sink) {
        static const std::string slice(SliceBytes, 'x');
        return sink.write(slice.data(), std::min(length, SliceBytes));
    };
}

// The library serves the ranges that it has parsed, but lets them reach beyond the end. Several at
// once get the whole file. Returns false if there is nothing in the range.
bool fitRange(const Request& request, qint64 size) {
    auto& ranges = const_cast<Request&>(request).ranges;
    if (ranges.size() != 1 || size == 0) {
        ranges.clear();
        return true;
    }
    auto& [first, last] = ranges.front();
    if (first == -1) // the last so many bytes
        last = std::min<ssize_t>(last, size);
    else if (first >= size) {
        ranges.clear();
        return false;
    } else if (last >= size) {
        last = size - 1;
    }
    return true;
}

void send(Response& response, qint64 size, const std::string& type, ContentProvider bytes) {
    response.set_header("Accept-Ranges", "bytes");
    if (size > 0)
        response.set_content_provider(static_cast<size_t>(size), type, std::move(bytes));
    else
        response.set_content("", 0, type);
}

void sendFile(Television& television, const Request& request, Response& response,
              const std::string& type) {
    const auto entry = television.library.find(parameterOf(request, "name").value_or(QString()));
    if (!entry)
        return replyError(response, 404, u"File not found"_s);
    const QString path = television.library.pathOf(*entry);
    auto file = std::make_shared<QFile>(path);
    if (!path.isEmpty() && !file->open(QIODevice::ReadOnly))
        return replyError(response, 500, u"The file could not be read."_s);
    const qint64 size = path.isEmpty() ? entry->sizeBytes : file->size();
    if (!fitRange(request, size)) {
        response.set_header("Content-Range", "bytes */" + std::to_string(size));
        return replyError(response, 416, u"The file ends before."_s);
    }
    send(response, size, type, path.isEmpty() ? madeUpBytes() : bytesOf(std::move(file)));
}

std::string typeOf(const Request& request) {
    const QString name = parameterOf(request, "name").value_or(QString());
    return QMimeDatabase()
        .mimeTypeForFile(name, QMimeDatabase::MatchExtension)
        .name()
        .toStdString();
}

} // namespace

void addDownloadEndpoints(httplib::Server& server, Television& television) {
    addPairedGet(server, "/api/files/download", television.pairing,
                 [&](const Request& request, Response& response) {
                     sendFile(television, request, response, "application/octet-stream");
                 });
    addPairedGet(server, "/api/files/stream", television.pairing,
                 [&](const Request& request, Response& response) {
                     sendFile(television, request, response, typeOf(request));
                 });
}

} // namespace quiv::simulator
