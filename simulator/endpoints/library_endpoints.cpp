#include "simulator/endpoints/library_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

void addLibraryEndpoints(httplib::Server& server, Television& television) {
    server.Get("/api/files", [&](const httplib::Request& request, httplib::Response& response) {
        if (television.browsingNeedsPairing && !television.pairing.isPaired(credentialsOf(request)))
            return replyPairingRequired(response);
        replyJson(response, television.library.listing());
    });
}

} // namespace quiv::simulator
