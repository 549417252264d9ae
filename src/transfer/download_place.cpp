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

namespace {

// As for the errors of the system's calls.
PlaceError placeError(int code, const QString& folder) {
    const QString name = QLatin1Char('"') + folder + QLatin1Char('"');
    switch (code) {
    case EACCES:
    case EPERM:
    case EROFS:
        return PlaceError(
            QStringLiteral("Files cannot be written to %1. Choose another folder.").arg(name));
    case ENOSPC:
    case EDQUOT:
        return PlaceError(
            QStringLiteral("There is no space left in %1. Free some or choose another folder.")
                .arg(name));
    case ENOENT:
    case ENOTDIR:
        return PlaceError(
            QStringLiteral("%1 is no longer there. Choose another folder and download again.")
                .arg(name));
    default:
        return PlaceError(QStringLiteral("The file could not be saved in %1 (%2).")
                              .arg(name, QString::fromLocal8Bit(std::strerror(code))));
    }
}

QString folderOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

} // namespace

DownloadPlace::DownloadPlace(const QString& destination) : m_destination(destination) {
    const QFileInfo place(destination);
    if (place.exists() && !place.isSymbolicLink() && !place.isFile())
        throw PlaceError(QStringLiteral("\"%1\" is no file that could be replaced. Choose another "
                                        "name.")
                             .arg(place.fileName()));
    const QString folder = folderOf(destination);
    if (!QDir().mkpath(folder))
        throw PlaceError(
            QStringLiteral("The folder \"%1\" could not be created. Choose another one.")
                .arg(folder));
    m_temporaryFile = folder + QStringLiteral("/.quiv-download-") + randomUuid();
    QFile file(m_temporaryFile);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw placeError(errno, folder);
}

DownloadPlace::~DownloadPlace() {
    QFile::remove(m_temporaryFile);
}

bool takeItsPlace(const QString& temporaryFile, const QString& destination, std::stop_token stop) {
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
