#pragma once

#include "platform/error.h"
#include "platform/open_file.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>

namespace quiv {

// Why a file cannot be put where the user wants it.
class PlaceError : public Error {
public:
    using Error::Error;
};

// A file being received on the disk of its destination: without a name where the file system can do
// that, else under a hidden one. It and its folder are held open, so that neither renaming the
// folder nor putting something else in its place misleads the download.
//
// All but file() and withdraw() may take as long as the disk does: see runOnDiskThread().
class DownloadPlace {
public:
    // What becomes of a file that has the name already.
    enum class Existing { Replaced, Kept };

    // A symbolic link at `destination` is followed if what exists is replaced; else the file gets
    // the next free name beside it. Makes no folders. Throws PlaceError, also for a destination
    // that is something else than a file and would have to give way.
    static std::shared_ptr<DownloadPlace> at(const QString& destination,
                                             Existing existing = Existing::Replaced);
    ~DownloadPlace();
    Q_DISABLE_COPY_MOVE(DownloadPlace)

    const std::shared_ptr<const OpenFile>& file() const { return m_file; }

    // Makes what is missing of the folder, puts the file on the disk for good and then, in one
    // step, in the place of the destination, whose permissions it gets; or beside it, if that is
    // kept. Returns false if it was withdrawn. Throws PlaceError.
    bool commit();
    // Returns false if it is too late, because the file is taking its place.
    bool withdraw() { return !m_isDecided.exchange(true); }

private:
    DownloadPlace(const QString& destination, Existing existing);

    void makeFolders();
    void takeFreeName();
    void takeOverPermissions() const;
    bool link(const OpenFile& folder, const QByteArray& name) const;
    [[noreturn]] void fail() const; // with what errno says

    Existing m_existing;
    QString m_folderPath;                     // for messages
    QByteArray m_name;                        // in its folder
    std::shared_ptr<const OpenFile> m_folder; // the nearest one that exists
    QStringList m_missing;                    // the folders below it
    std::shared_ptr<const OpenFile> m_temporaryFolder;
    QByteArray m_temporaryName; // empty while the file has none
    std::shared_ptr<const OpenFile> m_file;
    std::atomic<bool> m_isDecided = false; // either withdrawn or about to take its place
};

} // namespace quiv
