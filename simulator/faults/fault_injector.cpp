#include "simulator/faults/fault_injector.h"

#include "simulator/endpoints/reply.h"
#include "simulator/faults/altered_reply.h"
#include "simulator/server/connection.h"

namespace quiv::simulator {

namespace {

constexpr qint64 OversizedBytes = 80LL << 20;
constexpr const char* JsonType = "application/json; charset=utf-8";

std::string bodyOf(const Fault& fault) {
    const std::string part = fault.text("body").toStdString();
    std::string body = fault.text("before").toStdString();
    for (qint64 left = fault.number("repeat", 1); left > 0; --left)
        body += part;
    return body + fault.text("after").toStdString();
}

FaultInjector::Outcome reply(const Fault& fault, httplib::Response& response) {
    response.status = static_cast<int>(fault.number("status", 200));
    const std::string body = bodyOf(fault);
    const std::string type = fault.text("contentType").toStdString();
    if (const qint64 bytes = fault.number("tokenBytes"); bytes > 0) {
        response.set_header(TokenHeader, std::string(static_cast<size_t>(bytes), 't'));
        response.set_header(TokenLifetimeHeader, "600");
    }
    if (!body.empty())
        response.set_content(body, type.empty() ? JsonType : type);
    return FaultInjector::Outcome::Replied;
}

FaultInjector::Outcome replyBroken(httplib::Response& response) {
    response.set_content("{\"ok\": true, \"files\": [{\"name\": \"Broken", JsonType);
    return FaultInjector::Outcome::Replied;
}

// Chunked, so that its length shows only while it arrives.
FaultInjector::Outcome replyOversized(const Fault& fault, httplib::Response& response) {
    const qint64 total = fault.number("bytes", OversizedBytes);
    response.set_chunked_content_provider(
        JsonType, [total, sent = qint64(0)](size_t, httplib::DataSink& sink) mutable {
            static const std::string block(65'536, 'x');
            if (sent == 0)
                sink.write("{\"padding\":\"", 12);
            sink.write(block.data(), block.size());
            sent += static_cast<qint64>(block.size());
            if (sent < total)
                return true;
            sink.write("\"}", 2);
            sink.done();
            return true;
        });
    return FaultInjector::Outcome::Replied;
}

FaultInjector::Outcome breakConnection(const httplib::Request& request) {
    Connection(request).reset();
    return FaultInjector::Outcome::NoReply;
}

} // namespace

FaultInjector::Outcome FaultInjector::hang(const httplib::Request& request) {
    Connection connection(request);
    connection.waitUntilGone(m_stop);
    connection.reset();
    return Outcome::NoReply;
}

FaultInjector::Outcome FaultInjector::beforeReply(const httplib::Request& request,
                                                  httplib::Response& response) {
    const auto fault =
        m_faults.take(QString::fromStdString(request.method), QString::fromStdString(request.path),
                      Fault::Phase::BeforeReply);
    if (!fault)
        return Outcome::Continue;
    if (fault->kind != Fault::Kind::Delay && hasBody(request))
        closeAfterReply(response); // the body is not read
    switch (fault->kind) {
    case Fault::Kind::Delay:
        Connection(request).waitFor(std::chrono::milliseconds(fault->number("milliseconds")),
                                    m_stop);
        return Outcome::Continue;
    case Fault::Kind::Hang:
        return hang(request);
    case Fault::Kind::ResetBeforeReply:
        return breakConnection(request);
    case Fault::Kind::BrokenJson:
        return replyBroken(response);
    case Fault::Kind::OversizedJson:
        return replyOversized(*fault, response);
    default:
        return reply(*fault, response);
    }
}

void FaultInjector::alterReply(const httplib::Request& request, httplib::Response& response) {
    const auto fault = m_faults.take(QString::fromStdString(request.method),
                                     QString::fromStdString(request.path), Fault::Phase::Replying);
    if (!fault)
        return;
    switch (fault->kind) {
    case Fault::Kind::MistypedJson:
        return mistypeJson(response, fault->text("field"));
    case Fault::Kind::OneAuthHeader:
        return sendOneAuthHeader(response, fault->text("header"));
    case Fault::Kind::Trickle:
        return trickle(response, Connection(request), fault->number("bytesPerSecond"), m_stop);
    case Fault::Kind::AnnounceMore:
        return announceMore(response, fault->number("bytes"));
    case Fault::Kind::OmitLength:
        return omitLength(response, fault->number("bytes"));
    default:
        return resetAfter(response, Connection(request), fault->number("bytes"));
    }
}

} // namespace quiv::simulator
