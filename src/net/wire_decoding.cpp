#include "net/wire_decoding.h"

#include "net/json_structure.h"
#include "net/json_values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

TooManyFiles::TooManyFiles()
    : DecodingError(u"The TV lists more files than can be shown: at most 250,000."_s) {}

QString shownText(const QString& text) {
    if (text.size() <= LongestShownText)
        return text;
    const bool splitsPair = text[LongestShownText - 1].isHighSurrogate();
    return text.left(LongestShownText - (splitsPair ? 1 : 0));
}

namespace {

using json::Problem;
using json::read;
using json::readAmount;
using json::readIdentifier;
using json::Unusable;

class Fields;

template <class Record>
concept IsRecord = requires(const Fields& fields, Record& record) {
    readFields(fields, record);
};

constexpr int MostDepth = 32;
template <class Record> constexpr qsizetype MostValues = 4096;
template <> constexpr qsizetype MostValues<PlaybackResponse> = 20'000;

// Of a list of that many. The TV may have more files than can be shown; of its tracks, the first
// ones are enough.
template <class Value> qsizetype entriesToRead(qsizetype count) {
    if (count > MostFiles)
        throw TooManyFiles();
    return count;
}
template <> qsizetype entriesToRead<PlaybackTrack>(qsizetype count) {
    return std::min(count, MostTracks);
}

template <class Value> void read(const QJsonValue& value, QList<Value>& result);
template <class Record> void readRecord(const QJsonValue& value, Record& result);

// The members of one JSON object.
class Fields {
public:
    explicit Fields(const QJsonObject& object) : m_object(object) {}

    template <class Value> void required(QLatin1String key, Value& result) const {
        readAt(key, present(key), result, readAny<Value>);
    }
    void identifier(QLatin1String key, QString& result) const {
        readAt(key, present(key), result, readIdentifier);
    }
    template <class Number> void amount(QLatin1String key, Number& result) const {
        readAt(key, present(key), result, readAmount<Number>);
    }

    template <class Value> void optional(QLatin1String key, std::optional<Value>& result) const {
        optionalAt(key, result, readAny<Value>);
    }
    void optionalIdentifier(QLatin1String key, std::optional<QString>& result) const {
        optionalAt(key, result, readIdentifier);
    }
    template <class Number>
    void optionalAmount(QLatin1String key, std::optional<Number>& result) const {
        optionalAt(key, result, readAmount<Number>);
    }

    // Optional fields that keep their default when absent.
    template <class Value> void optional(QLatin1String key, QList<Value>& result) const {
        if (const QJsonValue value = m_object.value(key); isThere(value))
            readAt(key, value, result, readAny<QList<Value>>);
    }
    void optionalAmount(QLatin1String key, double& result) const {
        if (const QJsonValue value = m_object.value(key); isThere(value))
            readAt(key, value, result, readAmount<double>);
    }

private:
    template <class Value> using Reader = void (*)(const QJsonValue&, Value&);

    static bool isThere(const QJsonValue& value) { return !value.isUndefined() && !value.isNull(); }

    QJsonValue present(QLatin1String key) const {
        const QJsonValue value = m_object.value(key);
        if (!isThere(value))
            throw Problem{key, u"is missing"_s};
        return value;
    }

    // A record that cannot be used is left out.
    template <class Value>
    void optionalAt(QLatin1String key, std::optional<Value>& result, Reader<Value> reader) const {
        const QJsonValue value = m_object.value(key);
        if (!isThere(value))
            return;
        try {
            readAt(key, value, result.emplace(), reader);
        } catch (const Unusable&) {
            result.reset();
        }
    }

    template <class Value> static void readAny(const QJsonValue& value, Value& result) {
        if constexpr (IsRecord<Value>)
            readRecord(value, result);
        else
            read(value, result);
    }

    template <class Value>
    static void readAt(QLatin1String key, const QJsonValue& value, Value& result,
                       Reader<Value> reader) {
        try {
            reader(value, result);
        } catch (const Problem& problem) {
            throw problem.under(key);
        }
    }

    const QJsonObject& m_object;
};

#define KEY(name) QLatin1String(#name), record.name

void readFields(const Fields& fields, RemoteFile& record) {
    fields.identifier(KEY(name));
    fields.required(KEY(kind));
    fields.amount(KEY(sizeBytes));
    fields.optional(KEY(lastModifiedMs));
}

void readFields(const Fields& fields, RemoteVideo& record) {
    fields.identifier(KEY(name));
    fields.required(KEY(displayName));
    fields.amount(KEY(sizeBytes));
    fields.amount(KEY(subtitleCount));
    fields.optional(KEY(storageLocation));
    fields.optional(KEY(lastModifiedMs));
}

void readFields(const Fields& fields, RemoteStorage& record) {
    fields.amount(KEY(usedBytes));
    fields.amount(KEY(totalBytes));
    fields.amount(KEY(freeBytes));
}

void readFields(const Fields& fields, RemoteUsbStorage& record) {
    fields.identifier(KEY(driveId));
    fields.required(KEY(driveName));
    fields.required(KEY(isConnected));
    fields.amount(KEY(freeBytes));
    fields.amount(KEY(totalBytes));
    fields.amount(KEY(cachedVideoCount));
    fields.amount(KEY(cachedVideoBytes));
}

void readFields(const Fields& fields, FilesResponse& record) {
    fields.required(KEY(files));
    fields.required(KEY(videos));
    fields.optional(KEY(storage));
    fields.optional(KEY(internalStorage));
    fields.optional(KEY(usbStorage));
    fields.optional(KEY(usbSetupHint));
    fields.optional(KEY(preferredUploadTarget));
}

void readFields(const Fields& fields, RemoteDeviceInfo& record) {
    fields.optional(KEY(name));
    fields.optional(KEY(apiVersion));
    fields.optional(KEY(storageRoot));
    fields.optional(KEY(packageName));
    fields.optional(KEY(versionName));
    fields.optionalIdentifier(KEY(serverInstanceId));
    fields.optionalIdentifier(KEY(installationId));
    fields.optional(KEY(appInForeground));
    fields.optional(KEY(deviceBrand));
    fields.optional(KEY(deviceManufacturer));
    fields.optional(KEY(deviceModel));
}

void readFields(const Fields& fields, PlaybackTrack& record) {
    fields.identifier(KEY(id));
    fields.required(KEY(label));
    fields.optional(KEY(language));
    fields.required(KEY(selected));
}

void readFields(const Fields& fields, PlaybackResponse& record) {
    fields.optionalIdentifier(KEY(currentVideoName));
    fields.required(KEY(isPlaying));
    fields.amount(KEY(positionMs));
    fields.amount(KEY(durationMs));
    fields.optionalAmount(KEY(playbackSpeed));
    fields.optional(KEY(subtitleTracks));
    fields.optional(KEY(audioTracks));
}

void readFields(const Fields& fields, PairingStatusResponse& record) {
    fields.required(KEY(authorized));
    fields.optional(KEY(requiresPairing));
    fields.optional(KEY(client));
    fields.optional(KEY(clientLabel));
    fields.optional(KEY(expiresInSec));
    fields.optional(KEY(message));
}

void readFields(const Fields& fields, UploadStatusResponse& record) {
    fields.required(KEY(state));
    fields.identifier(KEY(fileName));
    fields.amount(KEY(receivedBytes));
    fields.amount(KEY(totalBytes));
    fields.optionalAmount(KEY(progressPercent));
    fields.required(KEY(message));
    fields.required(KEY(updatedAtMs));
}

void readFields(const Fields& fields, MoveStatusResponse& record) {
    fields.required(KEY(state));
    fields.identifier(KEY(fileName));
    fields.amount(KEY(movedBytes));
    fields.amount(KEY(totalBytes));
    fields.optionalAmount(KEY(progressPercent));
    fields.optionalAmount(KEY(speedBytesPerSec));
    fields.required(KEY(message));
    fields.required(KEY(updatedAtMs));
}

void readFields(const Fields& fields, ServerErrorPayload& record) {
    fields.optional(KEY(ok));
    fields.optional(KEY(error));
}

void readFields(const Fields& fields, UploadSuccessPayload& record) {
    fields.optionalIdentifier(KEY(fileName));
}

#undef KEY

template <class Record> void readRecord(const QJsonValue& value, Record& result) {
    if (!value.isObject())
        throw Problem{{}, u"is not an object"_s};
    const QJsonObject object = value.toObject();
    readFields(Fields(object), result);
}

template <class Value> void read(const QJsonValue& value, QList<Value>& result) {
    if (!value.isArray())
        throw Problem{{}, u"is not a list"_s};
    const QJsonArray array = value.toArray();
    const qsizetype count = entriesToRead<Value>(array.size());
    result.reserve(count);
    for (qsizetype index = 0; index < count; ++index) {
        try {
            readRecord(array.at(index), result.emplaceBack());
        } catch (const Problem& problem) {
            throw problem.under(u"[%1]"_s.arg(index));
        } catch (const Unusable&) {
            result.removeLast();
        }
    }
}

const auto NotUnderstood = u"The TV's reply could not be understood: "_s;

// What a reply of real content may have, with room for fields that are not known here.
template <class Record> void requireReasonableStructure(const JsonStructure& structure) {
    if (structure.depth > MostDepth || structure.values > MostValues<Record>)
        throw DecodingError(NotUnderstood + u"it holds too much."_s);
}

template <> void requireReasonableStructure<FilesResponse>(const JsonStructure& structure) {
    constexpr qsizetype others = 64;
    if (structure.depth > MostDepth)
        throw DecodingError(NotUnderstood + u"it holds too much."_s);
    if (structure.containers > 2 * MostFiles + others || structure.values > 20 * MostFiles)
        throw TooManyFiles();
}

template <class Record> Record decodeRecord(const QByteArray& json) {
    requireReasonableStructure<Record>(structureOf(json));
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        throw DecodingError(NotUnderstood + u"it is not a JSON object."_s);
    try {
        Record record;
        const QJsonObject object = document.object();
        readFields(Fields(object), record);
        return record;
    } catch (const Problem& problem) {
        throw DecodingError(NotUnderstood + u"\"%1\" %2."_s.arg(problem.path, problem.what));
    } catch (const Unusable&) {
        throw DecodingError(NotUnderstood + u"it holds a name that cannot be used."_s);
    }
}

} // namespace

template <> FilesResponse decode(const QByteArray& json) {
    return decodeRecord<FilesResponse>(json);
}
template <> RemoteDeviceInfo decode(const QByteArray& json) {
    return decodeRecord<RemoteDeviceInfo>(json);
}
template <> PlaybackResponse decode(const QByteArray& json) {
    return decodeRecord<PlaybackResponse>(json);
}
template <> PairingStatusResponse decode(const QByteArray& json) {
    return decodeRecord<PairingStatusResponse>(json);
}
template <> UploadStatusResponse decode(const QByteArray& json) {
    return decodeRecord<UploadStatusResponse>(json);
}
template <> MoveStatusResponse decode(const QByteArray& json) {
    return decodeRecord<MoveStatusResponse>(json);
}
template <> ServerErrorPayload decode(const QByteArray& json) {
    return decodeRecord<ServerErrorPayload>(json);
}
template <> UploadSuccessPayload decode(const QByteArray& json) {
    return decodeRecord<UploadSuccessPayload>(json);
}

} // namespace quiv
