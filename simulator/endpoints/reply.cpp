#include "simulator/endpoints/reply.h"

#include <QJsonDocument>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

bool hasBody(const httplib::Request& request) {
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

namespace {

void ignoreBody(const httplib::Request& request, const httplib::ContentReader& reader) {
    if (hasBody(request))
        reader([](const char*, size_t) { return true; });
}

httplib::Server::HandlerWithContentReader ignoringBody(httplib::Server::Handler handler) {
    return
        [handler = std::move(handler)](const httplib::Request& request, httplib::Response& response,
                                       const httplib::ContentReader& reader) {
            ignoreBody(request, reader);
            handler(request, response);
        };
}

} // namespace

void addPost(httplib::Server& server, const std::string& pattern,
             httplib::Server::Handler handler) {
    server.Post(pattern, ignoringBody(std::move(handler)));
}

namespace {

httplib::Server::Handler whenPaired(Pairing& pairing, httplib::Server::Handler handler) {
    return [&pairing, handler = std::move(handler)](const httplib::Request& request,
                                                    httplib::Response& response) {
        if (pairing.isPaired(credentialsOf(request)))
            handler(request, response);
        else
            replyPairingRequired(response);
    };
}

} // namespace

void addPairedPost(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                   httplib::Server::Handler handler) {
    addPost(server, pattern, whenPaired(pairing, std::move(handler)));
}

void addPairedGet(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                  httplib::Server::Handler handler) {
    server.Get(pattern, whenPaired(pairing, std::move(handler)));
}

void addPairedPut(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                  httplib::Server::HandlerWithContentReader handler) {
    server.Put(pattern, [&pairing, handler = std::move(handler)](
                            const httplib::Request& request, httplib::Response& response,
                            const httplib::ContentReader& reader) {
        const bool isPaired = pairing.isPaired(credentialsOf(request));
        if (isPaired && isFileName(parameterOf(request, "name").value_or(QString())))
            return handler(request, response, reader);
        closeAfterReply(response);
        if (isPaired)
            replyError(response, 400, u"The name is missing or wrong."_s);
        else
            replyPairingRequired(response);
    });
}

QByteArray readBody(const httplib::ContentReader& reader) {
    QByteArray body;
    reader([&](const char* bytes, size_t count) {
        body.append(bytes, static_cast<qsizetype>(count));
        return true;
    });
    return body;
}

std::optional<QString> parameterOf(const httplib::Request& request, const char* name) {
    if (!request.has_param(name))
        return std::nullopt;
    return QString::fromStdString(request.get_param_value(name));
}

bool isFileName(const QString& name) {
    return !name.isEmpty() && !name.contains(u'/') && name != "."_L1 && name != ".."_L1;
}

void addNotFound(httplib::Server& server) {
    const auto notFound = ignoringBody(
        [](const httplib::Request&, httplib::Response& response) { response.status = 404; });
    server.Post(".*", notFound);
    server.Put(".*", notFound);
}

Credentials credentialsOf(const httplib::Request& request) {
    if (const auto token = parameterOf(request, "authToken"))
        return {parameterOf(request, "clientId").value_or(QString()), *token};
    return {QString::fromStdString(request.get_header_value(ClientIdHeader)),
            QString::fromStdString(request.get_header_value(TokenHeader))};
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
    replyJson(response, {{u"ok"_s, false}, {u"error"_s, error}}, status);
}

void replyFull(httplib::Response& response) {
    closeAfterReply(response);
    replyError(response, 507, u"Not enough free space on target storage."_s);
}

void closeAfterReply(httplib::Response& response) {
    response.set_header("Connection", "close");
}

bool closesAfter(const httplib::Response& response) {
    return response.get_header_value("Connection") == "close";
}

void replyPairingRequired(httplib::Response& response) {
    replyError(response, 401, u"Pairing required: enter the 3-digit code shown on TV."_s);
}

void addToken(httplib::Response& response, const Pairing::Grant& grant) {
    response.set_header(TokenHeader, grant.token.toStdString());
    response.set_header(TokenLifetimeHeader, std::to_string(grant.expiresInSec));
}

} // namespace quiv::simulator
