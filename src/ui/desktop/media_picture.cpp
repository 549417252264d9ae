#include "ui/desktop/media_picture.h"

#include "platform/async/background.h"

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const ThumbnailShape Shape{{480, 270}, 0}; // sharp in a lock screen

} // namespace

// Lies where the system keeps what belongs to a session, in memory; removed with its last owner.
class MediaPicture::RuntimeFile {
public:
    explicit RuntimeFile(const QImage& picture) {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
        QTemporaryFile file(folder + u"/quiv-controller-XXXXXX.png"_s);
        if (folder.isEmpty() || !file.open())
            return;
        file.setAutoRemove(false);
        m_path = file.fileName();
        picture.save(&file, "PNG");
    }
    ~RuntimeFile() {
        if (!m_path.isEmpty())
            runOnDiskThread([path = m_path] { QFile::remove(path); });
    }
    RuntimeFile(const RuntimeFile&) = delete;
    RuntimeFile& operator=(const RuntimeFile&) = delete;

    QUrl url() const { return m_path.isEmpty() ? QUrl() : QUrl::fromLocalFile(m_path); }

private:
    QString m_path; // empty if it could not be made
};

MediaPicture::MediaPicture(ThumbnailStore& store) : m_loader(store) {
    connect(&m_loader, &ThumbnailLoader::imageChanged, this, &MediaPicture::take);
}

MediaPicture::~MediaPicture() = default;

QUrl MediaPicture::file() const {
    return m_file ? m_file->url() : QUrl();
}

void MediaPicture::load(const QUrl& address) {
    if (address == m_address)
        return;
    m_address = address;
    m_loader.load(address, Shape);
}

void MediaPicture::take() {
    m_writing.cancel();
    if (!m_loader.image().isNull())
        m_writing = writing(m_loader.image());
    else if (std::exchange(m_file, nullptr))
        Q_EMIT changed();
}

Task<> MediaPicture::writing(QImage picture) {
    const auto write = [picture]() -> std::shared_ptr<const RuntimeFile> {
        return std::make_shared<RuntimeFile>(picture);
    };
    m_file = co_await onDisk(write);
    Q_EMIT changed();
}

} // namespace quiv
