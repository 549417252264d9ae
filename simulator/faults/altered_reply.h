#pragma once

#include "simulator/server/connection.h"

#include <httplib.h>

#include <QString>

namespace quiv::simulator {

// Ways to spoil a complete response that has not been sent yet.

// Gives a field of a JSON object another type; an empty `field` stands for every field.
void mistypeJson(httplib::Response& response, const QString& field);
// Leaves only the token ("token", also by default) or only its lifetime ("lifetime"), with values
// made up when the response carries none.
void sendOneAuthHeader(httplib::Response& response, const QString& header);
// Sends the body slowly.
void trickle(httplib::Response& response, const Connection& connection, qint64 bytesPerSecond,
             const StopSignal& stop);
// Announces more bytes than come, and ends the connection after those.
void announceMore(httplib::Response& response, qint64 bytes);
// Does not say how long the body is, and ends the connection after that many bytes of it: zeros
// follow where it has fewer.
void omitLength(httplib::Response& response, qint64 bytes);
// Breaks the connection once the peer has received that much of the body.
void resetAfter(httplib::Response& response, const Connection& connection, qint64 bytes);

} // namespace quiv::simulator
