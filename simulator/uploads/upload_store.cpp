#include "simulator/uploads/upload_store.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quiv::simulator {

UploadStore::Incoming::Incoming(UploadStore& store, const QString& name, qint64 totalBytes)
    : m_store(store),
      m_name(name),
      m_totalBytes(totalBytes),
      m_keptBytes(totalBytes),
      m_folder(store.m_library.uploadFolder()),
      m_file(std::make_unique<QTemporaryFile>(m_folder + u'/' + QLatin1String(UploadingPrefix) +
                                              u"XXXXXX"_s)) {
    if (!m_file->open())
        m_file.reset();
    tell(u"RECEIVING"_s, u"Receiving."_s);
}

UploadStore::Incoming::~Incoming() {
    if (m_isStored)
        return;
    m_file.reset(); // before anybody hears of it
    tell(u"FAILED"_s, u"The upload was interrupted."_s);
}

bool UploadStore::Incoming::write(const char* bytes, qint64 count) {
    const qint64 kept = std::clamp<qint64>(m_keptBytes - m_receivedBytes, 0, count);
    if (!m_file || m_file->write(bytes, kept) != kept)
        return false;
    m_receivedBytes += count;
    tell(u"RECEIVING"_s, u"Receiving."_s);
    return true;
}

QString UploadStore::Incoming::freeName(Naming naming) const {
    const qsizetype dot = m_name.lastIndexOf(u'.');
    const QString stem = dot < 0 ? m_name : m_name.first(dot);
    const QString extension = dot < 0 ? QString() : m_name.sliced(dot);
    const auto isTaken = [this](const QString& name) {
        return QFile::exists(m_folder + u'/' + name) || m_store.m_library.find(name);
    };
    QString candidate = m_name;
    for (int copy = 1; isTaken(candidate) || (naming == Naming::AsCopy && copy == 1); ++copy)
        candidate = stem + u" (%1)"_s.arg(copy) + extension;
    return candidate;
}

std::optional<QString> UploadStore::Incoming::finish(Naming naming) {
    if (!m_file || m_receivedBytes != m_totalBytes || !m_file->flush())
        return std::nullopt;
    const QString stored = freeName(naming);
    m_file->setAutoRemove(false);
    if (!m_file->rename(m_folder + u'/' + stored))
        return std::nullopt;
    m_file->setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                           QFile::ReadOther);
    m_isStored = true;
    tell(u"COMPLETED"_s, u"Stored as %1."_s.arg(stored));
    return stored;
}

void UploadStore::Incoming::tell(const QString& state, const QString& message) {
    const std::scoped_lock lock(m_store.m_mutex);
    m_store.m_status = Status{.state = state,
                              .fileName = m_name,
                              .message = message,
                              .receivedBytes = m_receivedBytes,
                              .totalBytes = m_totalBytes,
                              .updatedAtMs = QDateTime::currentMSecsSinceEpoch()};
}

QByteArray UploadStore::status() {
    const std::scoped_lock lock(m_mutex);
    if (!m_status)
        return "null";
    const double share = m_status->totalBytes > 0 ? static_cast<double>(m_status->receivedBytes) /
                                                        static_cast<double>(m_status->totalBytes)
                                                  : 1;
    const QJsonObject json{{u"state"_s, m_status->state},
                           {u"fileName"_s, m_status->fileName},
                           {u"receivedBytes"_s, m_status->receivedBytes},
                           {u"totalBytes"_s, m_status->totalBytes},
                           {u"progressPercent"_s, share * 100},
                           {u"message"_s, m_status->message},
                           {u"updatedAtMs"_s, m_status->updatedAtMs}};
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

} // namespace quiv::simulator
