#include "simulator/server/tv_server.h"

#include "simulator/console.h"
#include "simulator/endpoints/download_endpoints.h"
#include "simulator/endpoints/info_endpoint.h"
#include "simulator/endpoints/library_endpoints.h"
#include "simulator/endpoints/pairing_endpoints.h"
#include "simulator/endpoints/playback_endpoints.h"
#include "simulator/endpoints/reply.h"
#include "simulator/endpoints/storage_endpoints.h"
#include "simulator/endpoints/thumbnail_endpoints.h"
#include "simulator/endpoints/upload_endpoints.h"
#include "simulator/server/connection.h"

using namespace Qt::StringLiterals;

namespace quiv::simulator {

using HandlerResponse = httplib::Server::HandlerResponse;

TvServer::TvServer(Television& television, FaultList& faults, RequestLog& log, bool printsRequests)
    : m_television(television),
      m_log(log),
      m_printsRequests(printsRequests),
      m_injector(faults, m_stop) {
    httplib::Server& server = m_listener.routes();
    server.set_pre_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
            return received(request, response);
        });
    server.set_post_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
            replying(request, response);
        });
    addInfoEndpoint(server, television);
    addLibraryEndpoints(server, television);
    addPairingEndpoints(server, television);
    addPlaybackEndpoints(server, television);
    addStorageEndpoints(server, television);
    addDownloadEndpoints(server, television);
    addThumbnailEndpoints(server, television);
    addUploadEndpoints(server, television, faults, m_outage, m_stop);
    addNotFound(server);
}

TvServer::~TvServer() {
    stop();
}

bool TvServer::listen(quint16 port, Protocol protocol) {
    m_protocol = protocol;
    // IPv6 sockets take IPv4 connections as well; without IPv6 there is only the plain kind.
    return m_listener.listen(u"::"_s, port) ||
           (protocol == Protocol::AnyIp && m_listener.listen(u"0.0.0.0"_s, port));
}

void TvServer::stop() {
    m_stop.raise();
    m_listener.stop();
}

namespace {

bool cameByIpv4(const httplib::Request& request) {
    return request.remote_addr.starts_with("::ffff:");
}

} // namespace

HandlerResponse TvServer::received(const httplib::Request& request, httplib::Response& response) {
    if (m_outage.isOn() || (m_protocol == Protocol::Ipv6Only && cameByIpv4(request))) {
        Connection(request).reset();
        return HandlerResponse::Handled;
    }
    m_log.received(request);
    switch (m_injector.beforeReply(request, response)) {
    case FaultInjector::Outcome::Continue:
        return HandlerResponse::Unhandled;
    case FaultInjector::Outcome::Replied:
        return HandlerResponse::Handled;
    case FaultInjector::Outcome::NoReply:
        break;
    }
    m_log.abandoned(request);
    return HandlerResponse::Handled;
}

void TvServer::replying(const httplib::Request& request, httplib::Response& response) {
    if (const auto grant = m_television.pairing.renewal(credentialsOf(request));
        grant && !response.has_header(TokenHeader))
        addToken(response, *grant);
    m_injector.alterReply(request, response);
    if (closesAfter(response)) // which the server library only announces
        response.content_provider_resource_releaser_ =
            [this, connection = Connection(request)](bool) mutable {
                connection.end(m_stop);
            };
    m_log.answered(request, response.status);
    if (m_printsRequests)
        printLine(
            u"%1 %2 -> %3"_s
                .arg(QString::fromStdString(request.method), QString::fromStdString(request.path))
                .arg(response.status));
}

} // namespace quiv::simulator
