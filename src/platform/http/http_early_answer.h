#pragma once

#include "platform/http/http_session.h"

#include <QByteArray>

#include <optional>

namespace quiv {

// The reply at the beginning of `bytes`, when there is a final (2xx to 5xx) one with all its
// headers; interim replies before it are skipped. Its body is what is there of it.
std::optional<HttpReply> parseEarlyAnswer(const QByteArray& bytes);

} // namespace quiv
