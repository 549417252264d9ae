#include "simulator/endpoints/info_endpoint.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

void addInfoEndpoint(httplib::Server& server, Television& television) {
    server.Get("/api/info", [&](const httplib::Request&, httplib::Response& response) {
        replyJson(response, television.identity.toJson());
    });
}

} // namespace quiv::simulator
