#include "transfer/download_place.h"

#include "platform/async/threads.h"
#include "platform/uuid.h"
#include "transfer/download_names.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr int MostLinks = 40; // as many as Linux follows
constexpr mode_t NewFileMode = 0666;
constexpr mode_t NewFolderMode = 0777;
constexpr mode_t PermissionBits = 0777;

// What the user can do about a failed system call; `code` is an errno.
PlaceError placeError(int code, const QString& folder) {
    const QString name = u'"' + folder + u'"';
    switch (code) {
    case EACCES:
    case EPERM:
    case EROFS:
        return PlaceError(u"Files cannot be written to %1. Choose another folder."_s.arg(name));
    case ENOSPC:
    case EDQUOT:
        return PlaceError(
            u"There is no space left in %1. Free some or choose another folder."_s.arg(name));
    case ENOENT:
    case ENOTDIR:
        return PlaceError(
            u"%1 is no longer there. Choose another folder and download again."_s.arg(name));
    default:
        return PlaceError(u"The file could not be saved in %1 (%2)."_s.arg(
            name, QString::fromLocal8Bit(std::strerror(code))));
    }
}

QString linkTarget(const QString& path) {
    QFileInfo file(path);
    for (int count = 0; file.isSymbolicLink() && count < MostLinks; ++count)
        file.setFile(file.symLinkTarget());
    return file.absoluteFilePath();
}

QByteArray hiddenName() {
    return ".quiv-download-" + randomUuid().toLatin1();
}

// Returns nullptr, with errno set, if it cannot be opened.
std::shared_ptr<const OpenFile> openFolder(int base, const QByteArray& path) {
    const int descriptor = ::openat(base, path.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return descriptor < 0 ? nullptr : OpenFile::owning(descriptor);
}

} // namespace

std::shared_ptr<DownloadPlace> DownloadPlace::at(const QString& destination, Existing existing) {
    const bool replaces = existing == Existing::Replaced;
    const QString path = replaces ? linkTarget(destination) : destination;
    return {new DownloadPlace(path, existing), [](DownloadPlace* place) {
                runOnDiskThread([place] { delete place; });
            }};
}

DownloadPlace::DownloadPlace(const QString& destination, Existing itsExisting)
    : m_existing(itsExisting) {
    const QFileInfo place(destination);
    if (m_existing == Existing::Replaced && place.exists() && !place.isFile())
        throw PlaceError(u"\"%1\" is no file that could be replaced. Choose another name."_s.arg(
            place.fileName()));
    m_folderPath = place.absolutePath();
    m_name = QFile::encodeName(place.fileName());
    QFileInfo existing(m_folderPath);
    while (!existing.exists() && !existing.isRoot()) {
        m_missing.prepend(existing.fileName());
        existing.setFile(existing.absolutePath());
    }
    m_folder = openFolder(AT_FDCWD, QFile::encodeName(existing.filePath()));
    if (!m_folder && errno == ENOTDIR)
        throw PlaceError(
            u"The folder \"%1\" could not be created. Choose another one."_s.arg(m_folderPath));
    if (!m_folder)
        fail();
    int file = ::openat(m_folder->descriptor(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, NewFileMode);
    if (file < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) {
        const QByteArray name = hiddenName();
        file = ::openat(m_folder->descriptor(), name.constData(),
                        O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, NewFileMode);
        if (file >= 0) {
            m_temporaryFolder = m_folder;
            m_temporaryName = name;
        }
    }
    if (file < 0)
        fail();
    m_file = OpenFile::owning(file);
}

DownloadPlace::~DownloadPlace() {
    if (!m_temporaryName.isEmpty())
        ::unlinkat(m_temporaryFolder->descriptor(), m_temporaryName.constData(), 0);
}

bool DownloadPlace::commit() {
    if (::fsync(m_file->descriptor()) != 0)
        fail();
    if (m_isDecided.exchange(true))
        return false;
    makeFolders();
    if (m_existing == Existing::Kept)
        takeFreeName();
    else
        takeOverPermissions();
    if (m_temporaryName.isEmpty()) {
        if (link(*m_folder, m_name))
            return true;
        if (errno != EEXIST)
            fail();
        const QByteArray name = hiddenName();
        if (!link(*m_folder, name))
            fail();
        m_temporaryFolder = m_folder;
        m_temporaryName = name;
    }
    if (::renameat(m_temporaryFolder->descriptor(), m_temporaryName.constData(),
                   m_folder->descriptor(), m_name.constData()) != 0)
        fail();
    m_temporaryName.clear();
    return true;
}

void DownloadPlace::makeFolders() {
    for (const QString& folder : std::exchange(m_missing, {})) {
        const QByteArray name = QFile::encodeName(folder);
        const int parent = m_folder->descriptor();
        if (::mkdirat(parent, name.constData(), NewFolderMode) != 0 && errno != EEXIST)
            fail();
        auto made = openFolder(parent, name);
        if (!made)
            fail();
        m_folder = std::move(made);
    }
}

void DownloadPlace::takeFreeName() {
    const QString wanted = QFile::decodeName(m_name);
    struct stat other {};
    for (int number = 1;
         ::fstatat(m_folder->descriptor(), m_name.constData(), &other, AT_SYMLINK_NOFOLLOW) == 0;
         ++number)
        m_name = QFile::encodeName(numberedDownloadName(wanted, number));
}

// Not all file systems can change permissions, so they are asked to only where there is a need.
void DownloadPlace::takeOverPermissions() const {
    struct stat replaced {};
    struct stat received {};
    const bool isFile = ::fstatat(m_folder->descriptor(), m_name.constData(), &replaced,
                                  AT_SYMLINK_NOFOLLOW) == 0 &&
                        S_ISREG(replaced.st_mode);
    if (!isFile)
        return;
    const mode_t permissions = replaced.st_mode & PermissionBits;
    const bool areSame = ::fstat(m_file->descriptor(), &received) == 0 &&
                         (received.st_mode & PermissionBits) == permissions;
    if (!areSame && ::fchmod(m_file->descriptor(), permissions) != 0)
        fail();
}

bool DownloadPlace::link(const OpenFile& folder, const QByteArray& name) const {
    const QByteArray source = "/proc/self/fd/" + QByteArray::number(m_file->descriptor());
    return ::linkat(AT_FDCWD, source.constData(), folder.descriptor(), name.constData(),
                    AT_SYMLINK_FOLLOW) == 0;
}

void DownloadPlace::fail() const {
    throw placeError(errno, m_folderPath);
}

} // namespace quiv
