#include "simulator/upload_store.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace quiv::simulator {

// "Movie (1).mkv", when there is a "Movie.mkv".
static QString freeName(const QString& folder, const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString stem = dot < 0 ? name : name.first(dot);
    const QString extension = dot < 0 ? QString() : name.sliced(dot);
    QString candidate = name;
    for (int copy = 1; QFile::exists(folder + u'/' + candidate); ++copy)
        candidate = stem + QStringLiteral(" (%1)").arg(copy) + extension;
    return candidate;
}

UploadStore::Incoming::Incoming(UploadStore& store, const QString& name, qint64 totalBytes)
    : m_store(store),
      m_name(name),
      m_totalBytes(totalBytes),
      m_folder(store.m_library.uploadFolder()),
      m_file(std::make_unique<QTemporaryFile>(m_folder + QStringLiteral("/.uploading-XXXXXX"))) {
    if (!m_file->open())
        m_file.reset();
    tell(QStringLiteral("RECEIVING"), QStringLiteral("Receiving."));
}

UploadStore::Incoming::~Incoming() {
    if (m_file)
        tell(QStringLiteral("FAILED"), QStringLiteral("The upload was interrupted."));
}

bool UploadStore::Incoming::write(const char* bytes, size_t count) {
    const auto size = static_cast<qint64>(count);
    if (!m_file || m_file->write(bytes, size) != size)
        return false;
    m_receivedBytes += size;
    return true;
}

std::optional<QString> UploadStore::Incoming::finish() {
    if (!m_file || m_receivedBytes != m_totalBytes || !m_file->flush())
        return std::nullopt;
    const QString stored = freeName(m_folder, m_name);
    m_file->setAutoRemove(false);
    if (!m_file->rename(m_folder + u'/' + stored))
        return std::nullopt;
    m_file->setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                           QFile::ReadOther);
    m_file.reset();
    tell(QStringLiteral("COMPLETED"), QStringLiteral("Stored as %1.").arg(stored));
    return stored;
}

void UploadStore::Incoming::tell(const QString& state, const QString& message) {
    const double share =
        m_totalBytes > 0 ? static_cast<double>(m_receivedBytes) / static_cast<double>(m_totalBytes)
                         : 1;
    const QJsonObject status{{QStringLiteral("state"), state},
                             {QStringLiteral("fileName"), m_name},
                             {QStringLiteral("receivedBytes"), m_receivedBytes},
                             {QStringLiteral("totalBytes"), m_totalBytes},
                             {QStringLiteral("progressPercent"), share * 100},
                             {QStringLiteral("message"), message},
                             {QStringLiteral("updatedAtMs"), QDateTime::currentMSecsSinceEpoch()}};
    const std::scoped_lock lock(m_store.m_mutex);
    m_store.m_status = QJsonDocument(status).toJson(QJsonDocument::Compact);
}

QByteArray UploadStore::status() {
    const std::scoped_lock lock(m_mutex);
    return m_status;
}

void UploadStore::setThumbnail(const QString& name, const QByteArray& jpeg) {
    const std::scoped_lock lock(m_mutex);
    m_thumbnails.insert(name, jpeg);
}

QByteArray UploadStore::thumbnail(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    return m_thumbnails.value(name);
}

} // namespace quiv::simulator
