#pragma once

#include "net/wire_records.h"
#include "platform/error.h"
#include "platform/http/http_session.h"

#include <QByteArray>

namespace quiv {

// Why a reply is not the record that was expected: one sentence that names the field.
class DecodingError : public Error {
public:
    using Error::Error;
};

// A listing of more files than are shown.
class TooManyFiles : public DecodingError {
public:
    TooManyFiles();
};

inline constexpr qsizetype MostFiles = 250'000;          // of a listing; so many videos besides
inline constexpr qsizetype MostTracks = 256;             // of each kind; further ones are left out
inline constexpr qsizetype LongestShownText = 256;       // characters; cut there
inline constexpr qsizetype LongestIdentifier = 4096;     // bytes of UTF-8; never cut
inline constexpr std::int64_t LargestNumber = 1ll << 53; // of any kind; cut there

// The beginning of a text that is only shown, cut between characters.
QString shownText(const QString& text);

// The largest reply that can be such a record, in bytes.
template <class Record> inline constexpr std::int64_t ReplyLimit = StandardReplyLimit;
template <> inline constexpr std::int64_t ReplyLimit<PlaybackResponse> = 1ll << 20;
template <> inline constexpr std::int64_t ReplyLimit<FilesResponse> = 64ll << 20;

// Decodes a JSON reply. Strict: a required field that is missing or mistyped, and an optional one
// that is mistyped, fail the whole reply; absent and null optional fields become nullopt; unknown
// keys are ignored. Total: any bytes give a record or a DecodingError. Pure, for any thread.
//
// A reply of an unreasonable structure is refused before anything is built of it. A text that is
// only shown is cut. One that goes back to the TV is whole: an entry, or an optional field, with
// one that is too long or no valid Unicode is left out, a record with one is refused. Sizes, counts
// and durations are never negative.
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
