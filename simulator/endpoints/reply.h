#pragma once

#include "simulator/tv/pairing.h"

#include <httplib.h>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace quiv::simulator {

inline constexpr const char* ClientIdHeader = "X-Quiv-Client-Id";
inline constexpr const char* TokenHeader = "X-Quiv-Auth-Token";
inline constexpr const char* TokenLifetimeHeader = "X-Quiv-Auth-Expires-In";

// A POST whose parameters are all in its query. It needs no Content-Length, which the server
// library insists on unless the handler reads the body itself; a body that comes nevertheless is
// ignored.
void addPost(httplib::Server& server, const std::string& pattern, httplib::Server::Handler handler);
// A POST that only a paired client may send; others get 401.
void addPairedPost(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                   httplib::Server::Handler handler);
// A GET that only a paired client may send; others get 401.
void addPairedGet(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                  httplib::Server::Handler handler);
// A PUT of something with a file's name; who is not paired, or names no file, is refused before the
// body is read.
void addPairedPut(httplib::Server& server, const std::string& pattern, Pairing& pairing,
                  httplib::Server::HandlerWithContentReader handler);
bool hasBody(const httplib::Request& request);
QByteArray readBody(const httplib::ContentReader& reader);
// Returns a query parameter, or nullopt if it is absent.
std::optional<QString> parameterOf(const httplib::Request& request, const char* name);
// A name as files have it, without a way to another folder.
bool isFileName(const QString& name);
// Everything that no other endpoint takes; to be added last.
void addNotFound(httplib::Server& server);

// Reads them from the headers, or from the query, where players and pictures have to carry them.
Credentials credentialsOf(const httplib::Request& request);

void replyJson(httplib::Response& response, const QByteArray& json, int status = 200);
void replyJson(httplib::Response& response, const QJsonObject& json, int status = 200);
// {"ok": false, "error": ...}
void replyError(httplib::Response& response, int status, const QString& error);
// Answers 507: the storage is full.
void replyFull(httplib::Response& response);
// Ends the connection after the reply, since there is more to come that is not read.
void closeAfterReply(httplib::Response& response);
bool closesAfter(const httplib::Response& response);
// The status of a response that is not sent, because its connection is broken.
inline constexpr int NoReply = 0;
void replyPairingRequired(httplib::Response& response);
// Hands out a token in the reply's headers.
void addToken(httplib::Response& response, const Pairing::Grant& grant);

} // namespace quiv::simulator
