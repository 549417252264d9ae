#pragma once

#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QJsonDocument>

#include <optional>

namespace quiv::simulator {

// What a client of the TV gets to see; status 0: no reply.
struct Reply {
    int status = 0;
    QByteArray body;
    QJsonObject json;
    QString token;
    QString lifetime;
};

// A client of the TV that keeps its token.
class TvClient {
public:
    explicit TvClient(const SimulatorProcess& tv, const char* id = "mac-1")
        : m_http("127.0.0.1", tv.port()), m_id(id) {}

    Reply get(const std::string& path) { return send("GET", path); }
    // Like a client that has no body to send and does not say so.
    Reply post(const std::string& path) { return send("POST", path); }
    Reply put(const std::string& path, const QByteArray& body) {
        return send("PUT", path, body, body.size());
    }
    // Says that a body comes, and sends none.
    Reply putNothing(const std::string& path, qsizetype announcedBytes) {
        return send("PUT", path, {}, announcedBytes);
    }
    Reply status() { return get("/api/mac/auth/status"); }
    Reply verify(const char* code) {
        return post("/api/mac/auth/verify?code=" + std::string(code));
    }
    void pair() { token = verify("123").token; }

    QString token;

private:
    Reply send(const char* method, const std::string& path, const QByteArray& body = {},
               const std::optional<qsizetype>& announcedBytes = {}) {
        httplib::Request request;
        request.method = method;
        request.path = path;
        request.headers = {{"X-Quiv-Client-Id", m_id}};
        if (!token.isEmpty())
            request.headers.emplace("X-Quiv-Auth-Token", token.toStdString());
        request.body = body.toStdString();
        if (announcedBytes)
            request.headers.emplace("Content-Length", std::to_string(*announcedBytes));
        const httplib::Result result = m_http.send(request);
        if (!result)
            return {};
        const auto header = [&](const char* name) {
            return QString::fromStdString(result->get_header_value(name));
        };
        const QByteArray received = QByteArray::fromStdString(result->body);
        return {result->status, received, QJsonDocument::fromJson(received).object(),
                header("X-Quiv-Auth-Token"), header("X-Quiv-Auth-Expires-In")};
    }

    httplib::Client m_http;
    std::string m_id;
};

} // namespace quiv::simulator
