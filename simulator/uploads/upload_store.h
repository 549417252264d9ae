#pragma once

#include "simulator/library/media_library.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryFile>

#include <memory>
#include <mutex>
#include <optional>

namespace quiv::simulator {

// The files that clients bring, on their way to the disk. Thread-safe.
class UploadStore {
public:
    explicit UploadStore(MediaLibrary& library) : m_library(library) {}

    // A file that is arriving: hidden beside its place until it is whole, gone if it never is.
    // Used by one thread.
    class Incoming {
    public:
        Incoming(UploadStore& store, const QString& name, qint64 totalBytes);
        ~Incoming();

        Q_DISABLE_COPY_MOVE(Incoming)

        // Has what comes after so many bytes counted, but not stored.
        void keepOnly(qint64 bytes) { m_keptBytes = bytes; }
        // Returns false if the disk fails.
        bool write(const char* bytes, qint64 count);
        qint64 receivedBytes() const { return m_receivedBytes; }

        enum class Naming {
            Asked,  // as a copy only if there is one of that name already
            AsCopy, // "Movie (1).mkv"
        };
        // Returns the name it is stored under, or nullopt if it is not whole or the disk fails.
        std::optional<QString> finish(Naming naming);

    private:
        QString freeName(Naming naming) const;
        void tell(const QString& state, const QString& message);

        UploadStore& m_store;
        const QString m_name;
        const qint64 m_totalBytes;
        qint64 m_receivedBytes = 0;
        qint64 m_keptBytes;
        QString m_folder;
        std::unique_ptr<QTemporaryFile> m_file;
        bool m_isStored = false;
    };

    // The reply of "api/upload-status"; "null" before the first upload.
    QByteArray status();

private:
    struct Status {
        QString state;
        QString fileName;
        QString message;
        qint64 receivedBytes = 0;
        qint64 totalBytes = 0;
        qint64 updatedAtMs = 0;
    };

    MediaLibrary& m_library;
    std::mutex m_mutex;
    std::optional<Status> m_status;
};

} // namespace quiv::simulator
