#pragma once

#include "net/tv.h"
#include "net/wire_records.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

namespace quiv {

class DownloadPlace;
class FileDialogs;
class Pairing;
class PendingFiles;
struct HttpProgress;

// The file that is being downloaded.
struct DownloadState {
    bool isDownloading = false;
    double currentDownloadProgress = 0; // 0 to 1
    QString currentDownloadFileName;    // empty when idle
    QString tvKey;                      // the endpointKey of the TV it comes from
    QString tvName;
    int fileNumber = 1; // of fileCount that are downloaded one after the other
    int fileCount = 1;

    bool operator==(const DownloadState&) const = default;
};

// The message of a failed download: the TV's own words, else one by status.
QString downloadErrorMessage(int status, const std::optional<QByteArray>& body);

// Downloads files of the selected TV to this computer, one at a time.
class Downloads : public QObject {
    Q_OBJECT

public:
    Downloads(const TvAccess& tvs, Pairing& pairing, FileDialogs& dialogs, PendingFiles& pending,
              QObject* parent = nullptr);
    ~Downloads() override;

    const DownloadState& state() const { return m_state; }

    // Asks the user where to, then does it: one file gets the name and place that the user wants;
    // several go to one folder in this order, where nothing gives way to them, and one that fails
    // does not hold up the others.
    void downloadFiles(const QList<quiv::RemoteFile>& files);
    void downloadFile(const quiv::RemoteFile& file) { downloadFiles({file}); }
    // Ends the download under way, whatever it waits for, unless the file is taking its place; and
    // begins none of those that wait.
    void cancelDownload();

Q_SIGNALS:
    void stateChanged();
    // Nothing is left to do, and what came of it; not if the user cancelled.
    void finished(const quiv::StatusMessage& message);

private:
    Task<bool> isAllowed(QList<RemoteFile> files);
    Task<> download(QList<RemoteFile> files);
    Task<QUrl> chooseDestination(QList<RemoteFile> files);
    Task<> transfer(Tv tv, QList<RemoteFile> files, QString destination, DownloadState state);
    Task<> downloadSingle(Tv tv, RemoteFile file, QString destination);
    void progressed(const HttpProgress& progress);
    void end(const StatusMessage& message);
    void changeState(DownloadState state);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    FileDialogs& m_dialogs;
    PendingFiles& m_pending;
    DownloadState m_state;
    std::shared_ptr<DownloadPlace> m_place; // of the download under way, once it is open
    bool m_isCancelled = false;             // the download under way
    bool m_isLast = false;                  // those that wait are not begun
    TaskSet m_tasks;
    Task<> m_transfer;
};

} // namespace quiv
