#include "simulator/endpoints/upload_endpoints.h"

#include "simulator/endpoints/reply.h"
#include "simulator/uploads/reception.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

using httplib::ContentReader;
using httplib::Request;
using httplib::Response;

namespace {

std::optional<qint64> number(const QString& text) {
    bool isNumber = false;
    const qint64 value = text.toLongLong(&isNumber);
    return isNumber && value >= 0 ? std::optional(value) : std::nullopt;
}

void announceUpload(Television& television, const Request& request, Response& response,
                    const QByteArray& jpeg) {
    const auto bytes = number(parameterOf(request, "sizeBytes").value_or(u"0"_s));
    if (!bytes)
        return replyError(response, 400, u"The size is wrong."_s);
    if (*bytes > television.library.freeBytes())
        return replyFull(response);
    television.thumbnails.bring(*parameterOf(request, "name"), jpeg);
    replyJson(response, {{u"ok"_s, true}});
}

std::optional<qint64> announcedBytes(const Request& request) {
    return number(QString::fromStdString(request.get_header_value("Content-Length")));
}

bool isRefused(Television& television, const Request& request, Response& response) {
    const auto bytes = announcedBytes(request);
    if (!bytes)
        replyError(response, 411, u"The length is missing."_s);
    else if (*bytes > television.library.freeBytes())
        replyFull(response);
    else
        return false;
    closeAfterReply(response);
    return true;
}

} // namespace

void addUploadEndpoints(httplib::Server& server, Television& television, FaultList& faults,
                        Outage& outage, StopSignal& stop) {
    addPairedPut(server, "/api/files/upload-preflight", television.pairing,
                 [&](const Request& request, Response& response, const ContentReader& reader) {
                     announceUpload(television, request, response, readBody(reader));
                 });
    addPairedPut(server, "/api/files/upload", television.pairing,
                 [&](const Request& request, Response& response, const ContentReader& reader) {
                     if (isRefused(television, request, response))
                         return;
                     const auto fault =
                         faults.take(u"PUT"_s, u"api/files/upload"_s, Fault::Phase::Receiving);
                     Reception(request, response, fault, outage, stop)
                         .run(television.uploads, *announcedBytes(request), reader);
                 });
    server.Get("/api/upload-status", [&](const Request&, Response& response) {
        replyJson(response, television.uploads.status());
    });
}

} // namespace quiv::simulator
