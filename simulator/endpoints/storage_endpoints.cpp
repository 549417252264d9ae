#include "simulator/endpoints/storage_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

void move(Television& television, const httplib::Request& request, httplib::Response& response) {
    const QString name = parameterOf(request, "name").value_or(QString());
    const QString target = parameterOf(request, "target").value_or(QString());
    const bool toUsb = target == "usb"_L1;
    if (!toUsb && target != "internal"_L1)
        return replyError(response, 400, u"The target is usb or internal."_s);
    if (const auto refusal = television.mover.start(name, toUsb))
        return replyError(response, refusal->status, refusal->reason);
    replyJson(response, {{u"ok"_s, true}});
}

void remove(Television& television, const httplib::Request& request, httplib::Response& response) {
    const QString name = parameterOf(request, "name").value_or(QString());
    if (!isFileName(name))
        return replyError(response, 400, u"The name is missing or wrong."_s);
    const auto entry = television.library.find(name); // what is not listed is not deleted
    if (!entry)
        return replyError(response, 404, u"File not found"_s);
    if (television.mover.isMoving(name))
        return replyError(response, 409, u"The file is being moved."_s);
    television.player.close(name);
    if (!television.library.remove(*entry))
        return replyError(response, 500, u"The file could not be deleted."_s);
    television.thumbnails.forget(name);
    replyJson(response, {{u"ok"_s, true}});
}

} // namespace

void addStorageEndpoints(httplib::Server& server, Television& television) {
    server.Get("/api/move-status", [&](const httplib::Request&, httplib::Response& response) {
        replyJson(response, television.mover.status());
    });
    addPairedPost(server, "/api/files/move", television.pairing,
                  [&](const httplib::Request& request, httplib::Response& response) {
                      move(television, request, response);
                  });
    addPairedPost(server, "/api/files/delete", television.pairing,
                  [&](const httplib::Request& request, httplib::Response& response) {
                      remove(television, request, response);
                  });
}

} // namespace quiv::simulator
