#include "simulator/endpoints/storage_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

static void move(Television& television, const httplib::Request& request,
                 httplib::Response& response) {
    const QString name = parameterOf(request, "name").value_or(QString());
    const QString target = parameterOf(request, "target").value_or(QString());
    const bool toUsb = target == QLatin1String("usb");
    if (!toUsb && target != QLatin1String("internal"))
        return replyError(response, 400, QStringLiteral("The target is usb or internal."));
    if (const auto refusal = television.mover.start(name, toUsb))
        return replyError(response, refusal->status, refusal->reason);
    replyJson(response, {{QStringLiteral("ok"), true}});
}

static void remove(Television& television, const httplib::Request& request,
                   httplib::Response& response) {
    const QString name = parameterOf(request, "name").value_or(QString());
    if (!isFileName(name))
        return replyError(response, 400, QStringLiteral("The name is missing or wrong."));
    const auto entry = television.library.find(name); // what is not listed is not deleted
    if (!entry)
        return replyError(response, 404, QStringLiteral("File not found"));
    if (television.mover.isMoving(name))
        return replyError(response, 409, QStringLiteral("The file is being moved."));
    television.player.close(name);
    if (!television.library.remove(*entry))
        return replyError(response, 500, QStringLiteral("The file could not be deleted."));
    television.thumbnails.forget(name);
    replyJson(response, {{QStringLiteral("ok"), true}});
}

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
