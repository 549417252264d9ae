#include "simulator/endpoints/pairing_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

QJsonObject statusJson(const Pairing::Status& status, const QString& clientId) {
    return {
        {u"authorized"_s, status.authorized},
        {u"requiresPairing"_s, !status.authorized},
        {u"client"_s, clientId},
        {u"clientLabel"_s, u"Quiv Controller"_s},
        {u"expiresInSec"_s, status.expiresInSec},
        {u"message"_s, status.authorized ? u"This computer may control the TV."_s
                                         : u"Enter the 3-digit code shown on TV."_s},
    };
}

void replyLockedOut(httplib::Response& response, qint64 seconds) {
    response.set_header("Retry-After", std::to_string(seconds));
    replyError(response, 429, u"Too many wrong codes. Try again in %1 seconds."_s.arg(seconds));
}

void replyWrongCode(httplib::Response& response, int attemptsLeft) {
    const QString rest = attemptsLeft > 0 ? u"%1 attempt(s) left."_s.arg(attemptsLeft)
                                          : u"No attempts left, wait before trying again."_s;
    replyError(response, 401, u"Wrong code. "_s + rest);
}

void replyVerdict(httplib::Response& response, const Pairing::Verdict& verdict) {
    switch (verdict.kind) {
    case Pairing::Verdict::Kind::Paired:
        addToken(response, verdict.grant);
        return replyJson(response, {{u"ok"_s, true}});
    case Pairing::Verdict::Kind::WrongCode:
        return replyWrongCode(response, verdict.attemptsLeft);
    case Pairing::Verdict::Kind::LockedOut:
        return replyLockedOut(response, verdict.lockedForSec);
    }
}

} // namespace

void addPairingEndpoints(httplib::Server& server, Television& television) {
    Pairing& pairing = television.pairing;
    server.Get("/api/mac/auth/status",
               [&](const httplib::Request& request, httplib::Response& response) {
                   const Credentials sender = credentialsOf(request);
                   replyJson(response, statusJson(pairing.status(sender), sender.clientId));
               });
    addPost(server, "/api/mac/auth/verify",
            [&](const httplib::Request& request, httplib::Response& response) {
                const QString clientId = credentialsOf(request).clientId;
                if (clientId.isEmpty())
                    return replyError(response, 400, u"Client id is missing."_s);
                const auto code = QString::fromStdString(request.get_param_value("code"));
                replyVerdict(response, pairing.verify(clientId, code));
            });
    addPost(server, "/api/mac/auth/cancel",
            [&](const httplib::Request& request, httplib::Response& response) {
                pairing.cancel(credentialsOf(request));
                replyJson(response, {{u"ok"_s, true}});
            });
}

} // namespace quiv::simulator
