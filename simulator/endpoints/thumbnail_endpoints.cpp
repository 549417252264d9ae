#include "simulator/endpoints/thumbnail_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

using httplib::ContentReader;
using httplib::Request;
using httplib::Response;

namespace {

void bring(Television& television, const Request& request, Response& response,
           const QByteArray& jpeg) {
    if (jpeg.isEmpty())
        return replyError(response, 400, u"The picture is missing."_s);
    television.thumbnails.bring(*parameterOf(request, "name"), jpeg);
    replyJson(response, {{u"ok"_s, true}});
}

void show(Television& television, const Request& request, Response& response) {
    const QByteArray jpeg =
        television.thumbnails.find(parameterOf(request, "name").value_or(QString()));
    if (jpeg.isEmpty())
        return replyError(response, 404, u"There is no picture yet."_s);
    response.set_content(jpeg.constData(), static_cast<size_t>(jpeg.size()), "image/jpeg");
}

} // namespace

void addThumbnailEndpoints(httplib::Server& server, Television& television) {
    addPairedPut(server, "/api/files/thumbnail", television.pairing,
                 [&](const Request& request, Response& response, const ContentReader& reader) {
                     bring(television, request, response, readBody(reader));
                 });
    addPairedGet(
        server, "/api/thumbnail", television.pairing,
        [&](const Request& request, Response& response) { show(television, request, response); });
}

} // namespace quiv::simulator
