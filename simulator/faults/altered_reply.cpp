#include "simulator/faults/altered_reply.h"

#include "simulator/endpoints/reply.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds TrickleInterval{50};

QJsonValue otherTypeOf(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::String:
        return 7;
    case QJsonValue::Double:
        return u"seven"_s;
    case QJsonValue::Array:
        return QJsonObject();
    default:
        return QJsonArray{1, 2};
    }
}

} // namespace

void mistypeJson(httplib::Response& response, const QString& field) {
    QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(response.body)).object();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (field.isEmpty() || member.key() == field)
            *member = otherTypeOf(*member);
    }
    response.body = QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
    response.headers.erase("Content-Length");
    response.set_header("Content-Length", std::to_string(response.body.size()));
}

void sendOneAuthHeader(httplib::Response& response, const QString& header) {
    const bool keepsLifetime = header == "lifetime"_L1;
    const char* kept = keepsLifetime ? TokenLifetimeHeader : TokenHeader;
    response.headers.erase(keepsLifetime ? TokenHeader : TokenLifetimeHeader);
    if (!response.has_header(kept))
        response.set_header(kept, keepsLifetime ? "600" : "0123456789abcdef");
}

namespace {

// The response's body as something that can be asked for piece by piece.
httplib::ContentProvider takeBody(httplib::Response& response) {
    if (response.content_provider_)
        return response.content_provider_;
    response.content_length_ = response.body.size();
    return [body = std::exchange(response.body, {})](size_t offset, size_t length,
                                                     httplib::DataSink& sink) {
        return sink.write(body.data() + offset, length);
    };
}

} // namespace

void trickle(httplib::Response& response, const Connection& connection, qint64 bytesPerSecond,
             const StopSignal& stop) {
    const auto step =
        static_cast<size_t>(std::max<qint64>(1, bytesPerSecond * TrickleInterval.count() / 1000));
    response.content_provider_ = [body = takeBody(response), connection, step,
                                  &stop](size_t offset, size_t length, httplib::DataSink& sink) {
        return body(offset, std::min(length, step), sink) &&
               connection.waitFor(TrickleInterval, stop);
    };
}

void announceMore(httplib::Response& response, qint64 bytes) {
    const std::string announced = response.get_header_value("Content-Length");
    response.headers.erase("Content-Length");
    response.set_header("Content-Length",
                        std::to_string(QByteArray::fromStdString(announced).toLongLong() + bytes));
    closeAfterReply(response);
}

void omitLength(httplib::Response& response, qint64 bytes) {
    const auto body = takeBody(response);
    const size_t bodySize = std::exchange(response.content_length_, 0);
    response.headers.erase("Content-Length");
    response.is_chunked_content_provider_ = false;
    response.content_provider_ = [body, bodySize, end = static_cast<size_t>(bytes)](
                                     size_t offset, size_t, httplib::DataSink& sink) {
        static const std::string zeros(size_t{65'536}, '\0');
        if (offset >= end) {
            sink.done();
            return true;
        }
        if (offset < bodySize)
            return body(offset, std::min(bodySize, end) - offset, sink);
        return sink.write(zeros.data(), std::min(zeros.size(), end - offset));
    };
    closeAfterReply(response);
}

void resetAfter(httplib::Response& response, const Connection& connection, qint64 bytes) {
    response.content_provider_ =
        [body = takeBody(response), breaking = connection,
         left = static_cast<size_t>(std::max<qint64>(0, bytes))](size_t offset, size_t length,
                                                                 httplib::DataSink& sink) mutable {
            const size_t part = std::min(length, left);
            if (part > 0 && !body(offset, part, sink))
                return false;
            left -= part;
            if (left > 0)
                return true;
            breaking.waitUntilDelivered();
            breaking.reset();
            return false;
        };
}

} // namespace quiv::simulator
