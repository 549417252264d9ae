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

// A file that is being received: it lies beside its destination under a name of its own and takes
// the destination's place when it is complete. What does not get there is removed.
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
// symbolic link there goes. False when it was to stop before that. Throws PlaceError. Any thread.
bool takeItsPlace(const QString& temporaryFile, const QString& destination, std::stop_token stop);

} // namespace quiv
