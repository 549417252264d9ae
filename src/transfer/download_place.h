#pragma once

#include "platform/error.h"

#include <QString>

#include <stop_token>

namespace quiv {

// Why a file cannot be put where the user wants it.
class PlaceError : public Error {
public:
    using Error::Error;
};

// The temporary file into which a download is received, beside its destination. commitDownload()
// renames it to the destination when it is complete; otherwise it is removed.
class DownloadPlace {
public:
    // Makes the temporary file, and the folders it needs. Throws PlaceError, also for a destination
    // that is something else than a file.
    explicit DownloadPlace(const QString& destination);
    ~DownloadPlace();
    Q_DISABLE_COPY_MOVE(DownloadPlace)

    const QString& temporaryFile() const { return m_temporaryFile; }
    const QString& destination() const { return m_destination; }

private:
    QString m_destination;
    QString m_temporaryFile;
};

// Puts the file on the disk for good and then, in one step, in the destination's place: a file or
// symbolic link there is replaced. Returns false if `stop` was requested before that. Throws
// PlaceError. May be called on any thread.
bool commitDownload(const QString& temporaryFile, const QString& destination, std::stop_token stop);

} // namespace quiv
