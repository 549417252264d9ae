#pragma once

#include "platform/async/task.h"
#include "ui/thumbnails/thumbnail_loader.h"

#include <QObject>
#include <QUrl>

#include <memory>

namespace quiv {

// The picture of a video as a file that the desktop can read, as long as it is shown. The desktop
// gets neither the TV's bytes, which nobody vouches for, nor an address with this client's rights.
class MediaPicture : public QObject {
    Q_OBJECT

public:
    explicit MediaPicture(ThumbnailStore& store);
    ~MediaPicture() override;

    // Of the picture that was wanted last; empty while there is none.
    QUrl file() const;
    // An empty address has no picture.
    void load(const QUrl& address);

Q_SIGNALS:
    void changed();

private:
    class RuntimeFile;

    void take();
    Task<> writing(QImage picture);

    ThumbnailLoader m_loader;
    QUrl m_address;
    std::shared_ptr<const RuntimeFile> m_file;
    Task<> m_writing;
};

} // namespace quiv
