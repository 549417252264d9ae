#include "simulator/server/control_server.h"

#include "simulator/endpoints/reply.h"
#include "simulator/server/screen_record.h"

#include <QDateTime>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace quiv::simulator {

using httplib::Request;
using httplib::Response;

namespace {

QJsonObject bodyOf(const Request& request) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
}

void replyOk(Response& response) {
    replyJson(response, {{u"ok"_s, true}});
}

// Answers 400 with the complaint, if there is one.
void replyOutcome(Response& response, const std::optional<QString>& complaint) {
    if (complaint)
        replyError(response, 400, *complaint);
    else
        replyOk(response);
}

void replyArray(Response& response, const QString& key, const QJsonArray& array) {
    replyJson(response, QJsonObject{{key, array}});
}

} // namespace

ControlServer::ControlServer(Television& television, FaultList& faults, RequestLog& log,
                             AnnouncementControl& announcement) {
    addFaultRoutes(faults);
    addRequestRoutes(log);
    addPairingRoutes(television.pairing);
    addLibraryRoutes(television.library);
    addMoveRoutes(television.mover);
    addScreenRoutes(television);
    addIdentityRoutes(television.identity, announcement);
}

bool ControlServer::listen(quint16 port) {
    return m_listener.listen(u"127.0.0.1"_s, port);
}

void ControlServer::addFaultRoutes(FaultList& faults) {
    httplib::Server& server = m_listener.routes();
    server.Get("/faults", [&](const Request&, Response& response) {
        replyArray(response, u"faults"_s, faults.toJson());
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
        replyArray(response, u"requests"_s, log.toJson());
    });
    server.Delete("/requests", [&](const Request&, Response& response) {
        log.clear();
        replyOk(response);
    });
}

namespace {

std::optional<QString> changePairing(Pairing& pairing, const QJsonObject& change) {
    const QJsonValue code = change["code"_L1];
    if (code.isString() && !code.toString().isEmpty() && !Pairing::isCode(code.toString()))
        return u"A code has three digits."_s;
    if (code.isString())
        pairing.setCode(code.toString());
    if (change["expireCode"_L1].toBool())
        pairing.expireCode();
    if (change["expireTokens"_L1].toBool())
        pairing.expireTokens();
    if (const QJsonValue lifetime = change["tokenLifetime"_L1]; lifetime.isDouble())
        pairing.setTokenLifetime(Pairing::Seconds(lifetime.toInteger()));
    return std::nullopt;
}

} // namespace

void ControlServer::addPairingRoutes(Pairing& pairing) {
    httplib::Server& server = m_listener.routes();
    server.Get("/pairing", [&](const Request&, Response& response) {
        pairing.renewExpiredCode();
        replyJson(response, QJsonObject{{u"code"_s, pairing.code()}});
    });
    server.Post("/pairing", [&](const Request& request, Response& response) {
        replyOutcome(response, changePairing(pairing, bodyOf(request)));
    });
}

namespace {

MediaEntry entryFrom(const QJsonObject& json) {
    const QString name = json["name"_L1].toString();
    return {.name = name,
            .kind = kindOfName(name),
            .sizeBytes = json["sizeBytes"_L1].toInteger(1'000'000),
            .lastModifiedMs =
                json["lastModifiedMs"_L1].toInteger(QDateTime::currentMSecsSinceEpoch()),
            .displayName = json["displayName"_L1].toString(displayNameOf(name)),
            .subtitleCount = json["subtitleCount"_L1].toInt(),
            .onUsb = json["storageLocation"_L1].toString() == "USB"_L1};
}

std::optional<QString> changeEntries(GeneratedEntries& entries, const QJsonObject& change) {
    const QString action = change["action"_L1].toString();
    const QString name = change["name"_L1].toString();
    bool done = false;
    if (action == "add"_L1)
        done = entries.add(entryFrom(change));
    else if (action == "remove"_L1)
        done = entries.remove(name);
    else if (action == "touch"_L1)
        done = entries.touch(name);
    else if (action == "rename"_L1)
        done = entries.rename(name, change["displayName"_L1].toString());
    else
        return u"The action is add, remove, touch or rename."_s;
    return done ? std::nullopt : std::optional(u"No such entry, or one too many."_s);
}

} // namespace

void ControlServer::addLibraryRoutes(MediaLibrary& library) {
    m_listener.routes().Post("/library", [&](const Request& request, Response& response) {
        const QJsonObject change = bodyOf(request);
        if (const QJsonValue connected = change["usbConnected"_L1]; connected.isBool()) {
            library.setUsbConnected(connected.toBool());
            return replyOk(response);
        }
        if (const QJsonValue bytes = change["freeBytes"_L1]; !bytes.isUndefined()) {
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
        if (!bodyOf(request)["failNext"_L1].toBool())
            return replyError(response, 400, u"Only failNext can be asked for."_s);
        mover.failNext();
        replyOk(response);
    });
}

void ControlServer::addScreenRoutes(Television& television) {
    httplib::Server& server = m_listener.routes();
    server.Get("/screen", [&](const Request&, Response& response) {
        replyJson(response, screenRecord(television));
    });
    server.Get("/screen/picture", [&](const Request& request, Response& response) {
        const auto name = parameterOf(request, "name");
        const QByteArray jpeg = name ? television.thumbnails.find(*name) : QByteArray();
        if (jpeg.isEmpty())
            return replyError(response, 404, u"There is no picture, or none yet."_s);
        response.set_content(jpeg.toStdString(), "image/jpeg");
    });
}

void ControlServer::addIdentityRoutes(Identity& identity, AnnouncementControl& announcement) {
    httplib::Server& server = m_listener.routes();
    server.Post("/name", [&](const Request& request, Response& response) {
        const QJsonValue name = bodyOf(request)["name"_L1];
        if (!name.isString())
            return replyError(response, 400, u"The name is missing."_s);
        identity.setName(name.toString());
        replyOk(response);
    });
    server.Post("/announce", [&](const Request& request, Response& response) {
        replyOutcome(response, announcement.change(bodyOf(request)));
    });
}

} // namespace quiv::simulator
