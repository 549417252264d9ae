#include "transfer/download_place.h"

#include "platform/uuid.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

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

QString folderOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

} // namespace

DownloadPlace::DownloadPlace(const QString& destination) : m_destination(destination) {
    const QFileInfo place(destination);
    if (place.exists() && !place.isSymbolicLink() && !place.isFile())
        throw PlaceError(u"\"%1\" is no file that could be replaced. Choose another "
                         "name."_s.arg(place.fileName()));
    const QString folder = folderOf(destination);
    if (!QDir().mkpath(folder))
        throw PlaceError(
            u"The folder \"%1\" could not be created. Choose another one."_s.arg(folder));
    m_temporaryFile = folder + u"/.quiv-download-"_s + randomUuid();
    QFile file(m_temporaryFile);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw placeError(errno, folder);
}

DownloadPlace::~DownloadPlace() {
    QFile::remove(m_temporaryFile);
}

bool commitDownload(const QString& temporaryFile, const QString& destination,
                    std::stop_token stop) {
    const QString folder = folderOf(destination);
    {
        QFile file(temporaryFile);
        errno = 0;
        if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) ||
            ::fsync(file.handle()) != 0)
            throw placeError(errno, folder);
    }
    if (stop.stop_requested())
        return false;
    if (std::rename(QFile::encodeName(temporaryFile).constData(),
                    QFile::encodeName(destination).constData()) != 0)
        throw placeError(errno, folder);
    return true;
}

} // namespace quiv
