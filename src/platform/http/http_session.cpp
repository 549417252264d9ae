#include "platform/http/http_session.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

QString descriptionOf(HttpErrorCode code) {
    switch (code) {
    case HttpErrorCode::Cancelled:
        return u"The request was canceled."_s;
    case HttpErrorCode::BadUrl:
        return u"The TV's address is not valid."_s;
    case HttpErrorCode::TimedOut:
        return u"The TV did not answer in time. Check that it is switched on."_s;
    case HttpErrorCode::CannotFindHost:
        return u"The TV's address could not be found. Refresh the list of TVs."_s;
    case HttpErrorCode::CannotConnect:
        return u"Could not connect to the TV. Check that the Quiv app is open on it."_s;
    case HttpErrorCode::ConnectionLost:
        return u"The connection to the TV was lost. Check the network and try again."_s;
    case HttpErrorCode::BadServerResponse:
        return u"The TV sent a reply that could not be understood."_s;
    case HttpErrorCode::CannotReadFile:
        return u"The file could not be read. Check that it still exists."_s;
    case HttpErrorCode::ReplyTooLarge:
        return u"The TV sent more data than expected."_s;
    case HttpErrorCode::CannotWriteFile:
        return u"The file could not be written. Check the free space of the disk."_s;
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
