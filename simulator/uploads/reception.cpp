#include "simulator/uploads/reception.h"

#include "simulator/endpoints/reply.h"

#include <algorithm>
#include <limits>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

qint64 cutOffBytesOf(const std::optional<Fault>& fault) {
    constexpr qint64 never = std::numeric_limits<qint64>::max();
    if (!fault)
        return never;
    switch (fault->kind) {
    case Fault::Kind::ReadThenReset:
    case Fault::Kind::StallReading:
    case Fault::Kind::FillUp:
    case Fault::Kind::AnswerEarly:
    case Fault::Kind::Vanish:
        return std::max<qint64>(0, fault->number("bytes"));
    default:
        return never;
    }
}

} // namespace

Reception::Reception(const httplib::Request& request, httplib::Response& response,
                     std::optional<Fault> fault, Outage& outage, const StopSignal& stop)
    : m_request(request),
      m_response(response),
      m_fault(std::move(fault)),
      m_outage(outage),
      m_stop(stop),
      m_connection(request),
      m_cutOffBytes(cutOffBytesOf(m_fault)) {}

void Reception::run(UploadStore& store, qint64 announcedBytes,
                    const httplib::ContentReader& reader) {
    Incoming file(store, *parameterOf(m_request, "name"), announcedBytes);
    if (is(Fault::Kind::TruncateStore))
        file.keepOnly(m_fault->number("bytes"));
    if (!isCutOff(file))
        reader([&](const char* bytes, size_t count) { return takeSlice(file, bytes, count); });
    if (isCutOff(file))
        endEarly();
    else
        answer(file);
}

bool Reception::takeSlice(Incoming& file, const char* bytes, size_t count) {
    const qint64 part = std::min(static_cast<qint64>(count), m_cutOffBytes - file.receivedBytes());
    return file.write(bytes, part) && !isCutOff(file) && keepsPace(file);
}

bool Reception::keepsPace(const Incoming& file) {
    if (!is(Fault::Kind::SlowReading))
        return true;
    const auto perSecond = std::max<qint64>(1, m_fault->number("bytesPerSecond"));
    const std::chrono::duration<double> due(static_cast<double>(file.receivedBytes()) /
                                            static_cast<double>(perSecond));
    const auto ahead =
        std::chrono::duration_cast<std::chrono::milliseconds>(m_start + due - Clock::now());
    return ahead.count() <= 0 || m_connection.waitFor(ahead, m_stop);
}

void Reception::endEarly() {
    switch (m_fault->kind) {
    case Fault::Kind::FillUp:
        return replyFull(m_response);
    case Fault::Kind::AnswerEarly:
        m_response.status = static_cast<int>(m_fault->number("status", 200));
        return closeAfterReply(m_response);
    case Fault::Kind::StallReading:
        m_connection.waitUntilGone(m_stop);
        break;
    case Fault::Kind::Vanish:
        m_outage.begin(std::chrono::milliseconds(m_fault->number("milliseconds")));
        resetConnections(static_cast<quint16>(m_request.local_port));
        break;
    default:
        break;
    }
    breakConnection();
}

void Reception::answer(Incoming& file) {
    const auto stored = file.finish(is(Fault::Kind::RenameStore) ? Incoming::Naming::AsCopy
                                                                 : Incoming::Naming::Asked);
    if (is(Fault::Kind::StoreThenHang))
        m_connection.waitUntilGone(m_stop);
    if (is(Fault::Kind::StoreThenHang) || is(Fault::Kind::StoreThenReset))
        return breakConnection();
    if (stored)
        return replyJson(m_response, {{u"ok"_s, true}, {u"fileName"_s, *stored}});
    // What is still to come must not become the next request.
    closeAfterReply(m_response);
    replyError(m_response, 500, u"The file could not be stored."_s);
}

void Reception::breakConnection() {
    m_connection.reset();
    m_response.status = NoReply;
}

} // namespace quiv::simulator
