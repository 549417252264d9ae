#include "simulator/control_server.h"

#include "simulator/endpoints/reply.h"

#include <QDateTime>
#include <QJsonDocument>

namespace quiv::simulator {

using httplib::Request;
using httplib::Response;

static QJsonObject bodyOf(const Request& request) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
}

static void replyOk(Response& response) {
    replyJson(response, {{QStringLiteral("ok"), true}});
}

// 400 with the complaint, when there is one.
static void replyOutcome(Response& response, const std::optional<QString>& complaint) {
    if (complaint)
        replyError(response, 400, *complaint);
    else
        replyOk(response);
}

static void replyArray(Response& response, const QString& key, const QJsonArray& array) {
    replyJson(response, QJsonObject{{key, array}});
}

ControlServer::ControlServer(Television& television, FaultList& faults, RequestLog& log,
                             AnnouncementControl& announcement) {
    addFaultRoutes(faults);
    addRequestRoutes(log);
    addPairingRoutes(television.pairing);
    addLibraryRoutes(television.library);
    addMoveRoutes(television.mover);
    addIdentityRoutes(television.identity, announcement);
}

bool ControlServer::listen(quint16 port) {
    return m_listener.listen(QStringLiteral("127.0.0.1"), port);
}

void ControlServer::addFaultRoutes(FaultList& faults) {
    httplib::Server& server = m_listener.routes();
    server.Get("/faults", [&](const Request&, Response& response) {
        replyArray(response, QStringLiteral("faults"), faults.toJson());
    });
    server.Post("/faults", [&](const Request& request, Response& response) {
        replyOutcome(response, faults.add(bodyOf(request)));
    });
    server.Delete("/faults", [&](const Request&, Response& response) {
        faults.clear();
        replyOk(response);
    });
}

void ControlServer::addRequestRoutes(RequestLog& log) {
    httplib::Server& server = m_listener.routes();
    server.Get("/requests", [&](const Request&, Response& response) {
        replyArray(response, QStringLiteral("requests"), log.toJson());
    });
    server.Delete("/requests", [&](const Request&, Response& response) {
        log.clear();
        replyOk(response);
    });
}

static std::optional<QString> changePairing(Pairing& pairing, const QJsonObject& change) {
    const QJsonValue code = change[QLatin1String("code")];
    if (code.isString() && !code.toString().isEmpty() && !Pairing::isCode(code.toString()))
        return QStringLiteral("A code has three digits.");
    if (code.isString())
        pairing.setCode(code.toString());
    if (change[QLatin1String("expireCode")].toBool())
        pairing.expireCode();
    if (change[QLatin1String("expireTokens")].toBool())
        pairing.expireTokens();
    if (const QJsonValue lifetime = change[QLatin1String("tokenLifetime")]; lifetime.isDouble())
        pairing.setTokenLifetime(Pairing::Seconds(lifetime.toInteger()));
    return std::nullopt;
}

void ControlServer::addPairingRoutes(Pairing& pairing) {
    httplib::Server& server = m_listener.routes();
    server.Get("/pairing", [&](const Request&, Response& response) {
        pairing.renewExpiredCode();
        replyJson(response, QJsonObject{{QStringLiteral("code"), pairing.code()}});
    });
    server.Post("/pairing", [&](const Request& request, Response& response) {
        replyOutcome(response, changePairing(pairing, bodyOf(request)));
    });
}

static MediaEntry entryFrom(const QJsonObject& json) {
    const QString name = json[QLatin1String("name")].toString();
    return {.name = name,
            .kind = kindOfName(name),
            .sizeBytes = json[QLatin1String("sizeBytes")].toInteger(1'000'000),
            .lastModifiedMs = json[QLatin1String("lastModifiedMs")].toInteger(
                QDateTime::currentMSecsSinceEpoch()),
            .displayName = json[QLatin1String("displayName")].toString(displayNameOf(name)),
            .subtitleCount = json[QLatin1String("subtitleCount")].toInt(),
            .onUsb = json[QLatin1String("storageLocation")].toString() == QLatin1String("USB")};
}

static std::optional<QString> changeEntries(GeneratedEntries& entries, const QJsonObject& change) {
    const QString action = change[QLatin1String("action")].toString();
    const QString name = change[QLatin1String("name")].toString();
    bool done = false;
    if (action == QLatin1String("add"))
        done = entries.add(entryFrom(change));
    else if (action == QLatin1String("remove"))
        done = entries.remove(name);
    else if (action == QLatin1String("touch"))
        done = entries.touch(name);
    else if (action == QLatin1String("rename"))
        done = entries.rename(name, change[QLatin1String("displayName")].toString());
    else
        return QStringLiteral("The action is add, remove, touch or rename.");
    return done ? std::nullopt : std::optional(QStringLiteral("No such entry, or one too many."));
}

void ControlServer::addLibraryRoutes(MediaLibrary& library) {
    m_listener.routes().Post("/library", [&](const Request& request, Response& response) {
        const QJsonObject change = bodyOf(request);
        if (const QJsonValue connected = change[QLatin1String("usbConnected")];
            connected.isBool()) {
            library.setUsbConnected(connected.toBool());
            return replyOk(response);
        }
        if (const QJsonValue bytes = change[QLatin1String("freeBytes")]; !bytes.isUndefined()) {
            library.setFreeBytes(bytes.isDouble() ? std::optional(bytes.toInteger())
                                                  : std::nullopt);
            return replyOk(response);
        }
        replyOutcome(response, library.changeGenerated([&](GeneratedEntries& entries) {
            return changeEntries(entries, change);
        }));
    });
}

void ControlServer::addMoveRoutes(StorageMover& mover) {
    m_listener.routes().Post("/move", [&](const Request& request, Response& response) {
        if (!bodyOf(request)[QLatin1String("failNext")].toBool())
            return replyError(response, 400, QStringLiteral("Only failNext can be asked for."));
        mover.failNext();
        replyOk(response);
    });
}

void ControlServer::addIdentityRoutes(Identity& identity, AnnouncementControl& announcement) {
    httplib::Server& server = m_listener.routes();
    server.Post("/name", [&](const Request& request, Response& response) {
        const QJsonValue name = bodyOf(request)[QLatin1String("name")];
        if (!name.isString())
            return replyError(response, 400, QStringLiteral("The name is missing."));
        identity.setName(name.toString());
        replyOk(response);
    });
    server.Post("/announce", [&](const Request& request, Response& response) {
        replyOutcome(response, announcement.change(bodyOf(request)));
    });
}

} // namespace quiv::simulator
