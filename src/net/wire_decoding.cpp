#include "net/wire_decoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// What is wrong with a value, and where, from the inside out.
struct Problem {
    QString path;
    QString what;

    Problem under(const QString& outer) const {
        if (path.isEmpty())
            return {outer, what};
        return {path.startsWith(u'[') ? outer + path : outer + u'.' + path, what};
    }
};

void read(const QJsonValue& value, QString& result) {
    if (!value.isString())
        throw Problem{{}, u"is not a text"_s};
    result = value.toString();
}

void read(const QJsonValue& value, bool& result) {
    if (!value.isBool())
        throw Problem{{}, u"is not true or false"_s};
    result = value.toBool();
}

void read(const QJsonValue& value, std::int64_t& result) {
    // toInteger() gives its argument for whatever is not a whole number of 64 bits.
    result = value.toInteger(0);
    if (!value.isDouble() || result != value.toInteger(1))
        throw Problem{{}, u"is not a whole number"_s};
}

void read(const QJsonValue& value, double& result) {
    if (!value.isDouble())
        throw Problem{{}, u"is not a number"_s};
    result = value.toDouble();
}

class Fields;

template <class Record>
concept IsRecord = requires(const Fields& fields, Record& record) {
    readFields(fields, record);
};

template <class Value> void read(const QJsonValue& value, QList<Value>& result);
template <class Record> void readRecord(const QJsonValue& value, Record& result);

// The members of one JSON object.
class Fields {
public:
    explicit Fields(const QJsonObject& object) : m_object(object) {}

    template <class Value> void required(QLatin1String key, Value& result) const {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull())
            throw Problem{key, u"is missing"_s};
        readAt(key, value, result);
    }

    template <class Value> void optional(QLatin1String key, std::optional<Value>& result) const {
        const QJsonValue value = m_object.value(key);
        if (!value.isUndefined() && !value.isNull())
            readAt(key, value, result.emplace());
    }

    // An optional field that keeps its default when absent.
    template <class Value> void optional(QLatin1String key, Value& result) const {
        const QJsonValue value = m_object.value(key);
        if (!value.isUndefined() && !value.isNull())
            readAt(key, value, result);
    }

private:
    template <class Value>
    static void readAt(QLatin1String key, const QJsonValue& value, Value& result) {
        try {
            if constexpr (IsRecord<Value>)
                readRecord(value, result);
            else
                read(value, result);
        } catch (const Problem& problem) {
            throw problem.under(key);
        }
    }

    const QJsonObject& m_object;
};

#define KEY(name) QLatin1String(#name), record.name

void readFields(const Fields& fields, RemoteFile& record) {
    fields.required(KEY(name));
    fields.required(KEY(kind));
    fields.required(KEY(sizeBytes));
    fields.optional(KEY(lastModifiedMs));
}

void readFields(const Fields& fields, RemoteVideo& record) {
    fields.required(KEY(name));
    fields.required(KEY(displayName));
    fields.required(KEY(sizeBytes));
    fields.required(KEY(subtitleCount));
    fields.optional(KEY(storageLocation));
    fields.optional(KEY(lastModifiedMs));
}

void readFields(const Fields& fields, RemoteStorage& record) {
    fields.required(KEY(usedBytes));
    fields.required(KEY(totalBytes));
    fields.required(KEY(freeBytes));
}

void readFields(const Fields& fields, RemoteUsbStorage& record) {
    fields.required(KEY(driveId));
    fields.required(KEY(driveName));
    fields.required(KEY(isConnected));
    fields.required(KEY(freeBytes));
    fields.required(KEY(totalBytes));
    fields.required(KEY(cachedVideoCount));
    fields.required(KEY(cachedVideoBytes));
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
    fields.optional(KEY(serverInstanceId));
    fields.optional(KEY(installationId));
    fields.optional(KEY(appInForeground));
    fields.optional(KEY(deviceBrand));
    fields.optional(KEY(deviceManufacturer));
    fields.optional(KEY(deviceModel));
}

void readFields(const Fields& fields, PlaybackTrack& record) {
    fields.required(KEY(id));
    fields.required(KEY(label));
    fields.optional(KEY(language));
    fields.required(KEY(selected));
}

void readFields(const Fields& fields, PlaybackResponse& record) {
    fields.optional(KEY(currentVideoName));
    fields.required(KEY(isPlaying));
    fields.required(KEY(positionMs));
    fields.required(KEY(durationMs));
    fields.optional(KEY(playbackSpeed));
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
    fields.required(KEY(fileName));
    fields.required(KEY(receivedBytes));
    fields.required(KEY(totalBytes));
    fields.optional(KEY(progressPercent));
    fields.required(KEY(message));
    fields.required(KEY(updatedAtMs));
}

void readFields(const Fields& fields, MoveStatusResponse& record) {
    fields.required(KEY(state));
    fields.required(KEY(fileName));
    fields.required(KEY(movedBytes));
    fields.required(KEY(totalBytes));
    fields.optional(KEY(progressPercent));
    fields.optional(KEY(speedBytesPerSec));
    fields.required(KEY(message));
    fields.required(KEY(updatedAtMs));
}

void readFields(const Fields& fields, ServerErrorPayload& record) {
    fields.optional(KEY(ok));
    fields.optional(KEY(error));
}

void readFields(const Fields& fields, UploadSuccessPayload& record) {
    fields.optional(KEY(fileName));
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
    result.reserve(array.size());
    for (qsizetype index = 0; index < array.size(); ++index) {
        try {
            readRecord(array.at(index), result.emplaceBack());
        } catch (const Problem& problem) {
            throw problem.under(u"[%1]"_s.arg(index));
        }
    }
}

template <class Record> Record decodeRecord(const QByteArray& json) {
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        throw DecodingError(u"The TV's reply could not be understood: it is not a JSON object."_s);
    }
    try {
        Record record;
        const QJsonObject object = document.object();
        readFields(Fields(object), record);
        return record;
    } catch (const Problem& problem) {
        throw DecodingError(u"The TV's reply could not be understood: \"%1\" %2."_s.arg(
            problem.path, problem.what));
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
