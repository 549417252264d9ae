#pragma once

#include "simulator/media_library.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QTemporaryFile>

#include <memory>
#include <mutex>
#include <optional>

namespace quiv::simulator {

// What clients bring: files on their way to the disk, and the stills that came with them.
// Thread-safe.
class UploadStore {
public:
    explicit UploadStore(MediaLibrary& library) : m_library(library) {}

    // A file that is arriving: hidden beside its place until it is whole, gone if it never is.
    // Used by one thread.
    class Incoming {
    public:
        Incoming(UploadStore& store, const QString& name, qint64 totalBytes);
        ~Incoming();

        bool write(const char* bytes, size_t count);
        qint64 receivedBytes() const { return m_receivedBytes; }
        // The name it is stored under: another than asked for if there is one of that name already.
        // None: it is not whole, or the disk did not play along.
        std::optional<QString> finish();

    private:
        void tell(const QString& state, const QString& message);

        UploadStore& m_store;
        const QString m_name;
        const qint64 m_totalBytes;
        qint64 m_receivedBytes = 0;
        QString m_folder;
        std::unique_ptr<QTemporaryFile> m_file;
    };

    // The reply of "api/upload-status"; "null" before the first upload.
    QByteArray status();

    void setThumbnail(const QString& name, const QByteArray& jpeg);
    // Empty: none.
    QByteArray thumbnail(const QString& name);

private:
    MediaLibrary& m_library;
    std::mutex m_mutex;
    QByteArray m_status = "null";
    QHash<QString, QByteArray> m_thumbnails;
};

} // namespace quiv::simulator
