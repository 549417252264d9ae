#include "simulator/endpoints/upload_endpoints.h"

#include "simulator/absence.h"
#include "simulator/connection.h"
#include "simulator/endpoints/reply.h"

#include <thread>

namespace quiv::simulator {

using httplib::ContentReader;
using httplib::Request;
using httplib::Response;

namespace {

// A file as it arrives, with whatever shall happen to it.
class Reception {
public:
    Reception(const Request& request, Response& response, const ContentReader& reader,
              std::optional<Fault> fault)
        : m_request(request), m_response(response), m_reader(reader), m_fault(std::move(fault)) {}

    void run(UploadStore& store, Absence& absence, const StopSignal& stop);

private:
    bool is(Fault::Kind kind) const { return m_fault && m_fault->kind == kind; }
    // False: the rest is not read.
    bool takeSlice(UploadStore::Incoming& file, const char* bytes, size_t count,
                   const StopSignal& stop);
    void endEarly(Absence& absence, const StopSignal& stop);
    void answer(UploadStore::Incoming& file, const StopSignal& stop);

    const Request& m_request;
    Response& m_response;
    const ContentReader& m_reader;
    std::optional<Fault> m_fault;
    bool m_isCutOff = false; // by the fault
};

} // namespace

static qint64 announcedLength(const Request& request) {
    return request.has_header("Content-Length")
               ? static_cast<qint64>(request.get_header_value<uint64_t>("Content-Length"))
               : 0;
}

bool Reception::takeSlice(UploadStore::Incoming& file, const char* bytes, size_t count,
                          const StopSignal& stop) {
    const bool countsBytes =
        m_fault && !is(Fault::Kind::SlowReading) && !is(Fault::Kind::StoreThenHang);
    if (countsBytes && file.receivedBytes() >= m_fault->number("bytes")) {
        m_isCutOff = true;
        return false;
    }
    if (is(Fault::Kind::SlowReading)) {
        const auto perSecond =
            static_cast<double>(std::max(1LL, m_fault->number("bytesPerSecond")));
        const std::chrono::duration<double> pause(static_cast<double>(count) / perSecond);
        if (!Connection(m_request).waitFor(
                std::chrono::duration_cast<std::chrono::milliseconds>(pause), stop))
            return false;
    }
    return file.write(bytes, count);
}

// The connection ends with the request: what was sent and not read must not become the next one.
void Reception::endEarly(Absence& absence, const StopSignal& stop) {
    Connection connection(m_request);
    switch (m_fault->kind) {
    case Fault::Kind::FillUp:
        m_response.set_header("Connection", "close");
        return replyError(m_response, 507,
                          QStringLiteral("Not enough free space on target storage."));
    case Fault::Kind::StallReading:
        connection.waitUntilGone(stop);
        break;
    case Fault::Kind::Vanish:
        absence.begin(std::chrono::milliseconds(m_fault->number("milliseconds")));
        break;
    default:
        break;
    }
    connection.reset();
}

void Reception::answer(UploadStore::Incoming& file, const StopSignal& stop) {
    const auto stored = file.finish();
    if (is(Fault::Kind::StoreThenHang)) {
        Connection connection(m_request);
        connection.waitUntilGone(stop);
        return connection.reset();
    }
    if (stored)
        return replyJson(m_response,
                         {{QStringLiteral("ok"), true}, {QStringLiteral("fileName"), *stored}});
    replyError(m_response, 500, QStringLiteral("The file could not be stored."));
}

void Reception::run(UploadStore& store, Absence& absence, const StopSignal& stop) {
    const QString name = parameterOf(m_request, "name").value_or(QString());
    UploadStore::Incoming file(store, name, announcedLength(m_request));
    m_reader([&](const char* bytes, size_t count) { return takeSlice(file, bytes, count, stop); });
    if (m_isCutOff)
        endEarly(absence, stop);
    else
        answer(file, stop);
}

static QByteArray readBody(const ContentReader& reader) {
    QByteArray body;
    reader([&](const char* bytes, size_t count) {
        body.append(bytes, static_cast<qsizetype>(count));
        return true;
    });
    return body;
}

// A refusal before the body is read is the connection's last word.
static bool isRefused(Television& television, const Request& request, Response& response) {
    const bool isPaired = television.pairing.isPaired(credentialsOf(request));
    if (isPaired && isFileName(parameterOf(request, "name").value_or(QString())))
        return false;
    response.set_header("Connection", "close");
    if (isPaired)
        replyError(response, 400, QStringLiteral("The name is missing or wrong."));
    else
        replyPairingRequired(response);
    return true;
}

static void addStill(httplib::Server& server, const char* path, Television& television) {
    server.Put(path, [&](const Request& request, Response& response, const ContentReader& reader) {
        if (isRefused(television, request, response))
            return;
        const QByteArray body = readBody(reader);
        if (!body.isEmpty())
            television.uploads.setThumbnail(*parameterOf(request, "name"), body);
        replyJson(response, {{QStringLiteral("ok"), true}});
    });
}

void addUploadEndpoints(httplib::Server& server, Television& television, FaultList& faults,
                        Absence& absence, StopSignal& stop) {
    addStill(server, "/api/files/upload-preflight", television);
    addStill(server, "/api/files/thumbnail", television);
    server.Put("/api/files/upload", [&](const Request& request, Response& response,
                                        const ContentReader& reader) {
        if (isRefused(television, request, response))
            return;
        const auto fault = faults.take(QStringLiteral("PUT"), QStringLiteral("api/files/upload"),
                                       Fault::Phase::Receiving);
        Reception(request, response, reader, fault).run(television.uploads, absence, stop);
    });
    server.Get("/api/upload-status", [&](const Request&, Response& response) {
        replyJson(response, television.uploads.status());
    });
    server.Get("/api/thumbnail", [&](const Request& request, Response& response) {
        const QByteArray jpeg =
            television.uploads.thumbnail(parameterOf(request, "name").value_or(QString()));
        if (jpeg.isEmpty())
            return replyError(response, 404, QStringLiteral("There is no picture yet."));
        response.set_content(jpeg.constData(), static_cast<size_t>(jpeg.size()), "image/jpeg");
    });
}

} // namespace quiv::simulator
