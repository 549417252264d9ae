#pragma once

#include "net/wire_records.h"
#include "platform/error.h"

#include <QByteArray>

namespace quiv {

// Why a reply is not the record that was expected: one sentence that names the field.
class DecodingError : public Error {
public:
    using Error::Error;
};

// Decodes a JSON reply. Strict: a required field that is missing or mistyped, and an optional one
// that is mistyped, fail the whole reply; absent and null optional fields become nullopt; unknown
// keys are ignored. Total: any bytes give a record or a DecodingError. Pure, for any thread.
template <class Record> Record decode(const QByteArray& json);

template <> FilesResponse decode(const QByteArray& json);
template <> RemoteDeviceInfo decode(const QByteArray& json);
template <> PlaybackResponse decode(const QByteArray& json);
template <> PairingStatusResponse decode(const QByteArray& json);
template <> UploadStatusResponse decode(const QByteArray& json);
template <> MoveStatusResponse decode(const QByteArray& json);
template <> ServerErrorPayload decode(const QByteArray& json);
template <> UploadSuccessPayload decode(const QByteArray& json);

} // namespace quiv
