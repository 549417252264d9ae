#include "simulator/endpoints/reply.h"

#include <QJsonDocument>

namespace quiv::simulator {

static void ignoreBody(const httplib::Request& request, const httplib::ContentReader& reader) {
    if (request.has_header("Content-Length") || request.has_header("Transfer-Encoding"))
        reader([](const char*, size_t) { return true; });
}

static httplib::Server::HandlerWithContentReader ignoringBody(httplib::Server::Handler handler) {
    return
        [handler = std::move(handler)](const httplib::Request& request, httplib::Response& response,
                                       const httplib::ContentReader& reader) {
            ignoreBody(request, reader);
            handler(request, response);
        };
}

void addPost(httplib::Server& server, const std::string& pattern,
             httplib::Server::Handler handler) {
    server.Post(pattern, ignoringBody(std::move(handler)));
}

void addPairedPost(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                   httplib::Server::Handler handler) {
    addPost(server, pattern,
            [&pairing, handler = std::move(handler)](const httplib::Request& request,
                                                     httplib::Response& response) {
                if (pairing.isPaired(credentialsOf(request)))
                    handler(request, response);
                else
                    replyPairingRequired(response);
            });
}

std::optional<QString> parameterOf(const httplib::Request& request, const char* name) {
    if (!request.has_param(name))
        return std::nullopt;
    return QString::fromStdString(request.get_param_value(name));
}

bool isFileName(const QString& name) {
    return !name.isEmpty() && !name.contains(u'/') && name != QLatin1String(".") &&
           name != QLatin1String("..");
}

void addNotFound(httplib::Server& server) {
    const auto notFound = ignoringBody(
        [](const httplib::Request&, httplib::Response& response) { response.status = 404; });
    server.Post(".*", notFound);
    server.Put(".*", notFound);
}

Credentials credentialsOf(const httplib::Request& request) {
    return {QString::fromStdString(request.get_header_value(clientIdHeader)),
            QString::fromStdString(request.get_header_value(tokenHeader))};
}

void replyJson(httplib::Response& response, const QByteArray& json, int status) {
    response.status = status;
    response.set_content(json.constData(), static_cast<size_t>(json.size()),
                         "application/json; charset=utf-8");
}

void replyJson(httplib::Response& response, const QJsonObject& json, int status) {
    replyJson(response, QJsonDocument(json).toJson(QJsonDocument::Compact), status);
}

void replyError(httplib::Response& response, int status, const QString& error) {
    replyJson(response, {{QStringLiteral("ok"), false}, {QStringLiteral("error"), error}}, status);
}

void replyPairingRequired(httplib::Response& response) {
    replyError(response, 401,
               QStringLiteral("Pairing required: enter the 3-digit code shown on TV."));
}

void addToken(httplib::Response& response, const Pairing::Grant& grant) {
    response.set_header(tokenHeader, grant.token.toStdString());
    response.set_header(tokenLifetimeHeader, std::to_string(grant.expiresInSec));
}

} // namespace quiv::simulator
