#include "simulator/endpoints/pairing_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

static QJsonObject statusJson(const Pairing::Status& status, const QString& clientId) {
    return {
        {QStringLiteral("authorized"), status.authorized},
        {QStringLiteral("requiresPairing"), !status.authorized},
        {QStringLiteral("client"), clientId},
        {QStringLiteral("clientLabel"), QStringLiteral("Quiv Controller")},
        {QStringLiteral("expiresInSec"), status.expiresInSec},
        {QStringLiteral("message"), status.authorized
                                        ? QStringLiteral("This computer may control the TV.")
                                        : QStringLiteral("Enter the 3-digit code shown on TV.")},
    };
}

static void replyLockedOut(httplib::Response& response, qint64 seconds) {
    replyError(response, 429,
               QStringLiteral("Too many wrong codes. Try again in %1 seconds.").arg(seconds));
}

static void replyWrongCode(httplib::Response& response, int attemptsLeft) {
    const QString rest = attemptsLeft > 0
                             ? QStringLiteral("%1 attempt(s) left.").arg(attemptsLeft)
                             : QStringLiteral("No attempts left, wait before trying again.");
    replyError(response, 401, QStringLiteral("Wrong code. ") + rest);
}

static void replyVerdict(httplib::Response& response, const Pairing::Verdict& verdict) {
    switch (verdict.kind) {
    case Pairing::Verdict::Kind::Paired:
        addToken(response, verdict.grant);
        return replyJson(response, {{QStringLiteral("ok"), true}});
    case Pairing::Verdict::Kind::WrongCode:
        return replyWrongCode(response, verdict.attemptsLeft);
    case Pairing::Verdict::Kind::LockedOut:
        return replyLockedOut(response, verdict.lockedForSec);
    }
}

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
                    return replyError(response, 400, QStringLiteral("Client id is missing."));
                const auto code = QString::fromStdString(request.get_param_value("code"));
                replyVerdict(response, pairing.verify(clientId, code));
            });
    addPost(server, "/api/mac/auth/cancel",
            [&](const httplib::Request& request, httplib::Response& response) {
                pairing.cancel(credentialsOf(request));
                replyJson(response, {{QStringLiteral("ok"), true}});
            });
}

} // namespace quiv::simulator
