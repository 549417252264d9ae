#include "platform/http/http_session.h"

#include <QUrl>

namespace quiv {

namespace {

QString descriptionOf(HttpErrorCode code) {
    switch (code) {
    case HttpErrorCode::Cancelled:
        return QStringLiteral("The request was canceled.");
    case HttpErrorCode::BadUrl:
        return QStringLiteral("The TV's address is not valid.");
    case HttpErrorCode::TimedOut:
        return QStringLiteral("The TV did not answer in time. Check that it is switched on.");
    case HttpErrorCode::CannotFindHost:
        return QStringLiteral("The TV's address could not be found. Refresh the list of TVs.");
    case HttpErrorCode::CannotConnect:
        return QStringLiteral(
            "Could not connect to the TV. Check that the Quiv app is open on it.");
    case HttpErrorCode::ConnectionLost:
        return QStringLiteral(
            "The connection to the TV was lost. Check the network and try again.");
    case HttpErrorCode::BadServerResponse:
        return QStringLiteral("The TV sent a reply that could not be understood.");
    case HttpErrorCode::CannotReadFile:
        return QStringLiteral("The file could not be read. Check that it still exists.");
    case HttpErrorCode::ReplyTooLarge:
        return QStringLiteral("The TV sent more data than expected.");
    case HttpErrorCode::CannotWriteFile:
        return QStringLiteral("The file could not be written. Check the free space of the disk.");
    }
    return {};
}

} // namespace

HttpError::HttpError(HttpErrorCode code) : Error(descriptionOf(code)), m_code(code) {}

bool isCancellation(const Error& error) {
    const auto* failure = dynamic_cast<const HttpError*>(&error);
    return failure && failure->code() == HttpErrorCode::Cancelled;
}

std::optional<QByteArray> HttpReply::header(QByteArrayView name) const {
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return std::nullopt;
}

QByteArray percentEncoded(const QString& text) {
    return QUrl::toPercentEncoding(text);
}

} // namespace quiv
