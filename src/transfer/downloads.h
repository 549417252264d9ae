#pragma once

#include "net/tv.h"
#include "net/wire_records.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

namespace quiv {

class DownloadPlace;
class FileDialogs;
class Pairing;
struct HttpProgress;

// The file that is being downloaded.
struct DownloadState {
    bool isDownloading = false;
    double currentDownloadProgress = 0; // 0 to 1
    QString currentDownloadFileName;    // empty when idle
    QString tvKey;                      // the endpointKey of the TV it comes from
    QString tvName;

    bool operator==(const DownloadState&) const = default;
};

// The message of a failed download: the TV's own words, else one by status.
QString downloadErrorMessage(int status, const std::optional<QByteArray>& body);

// Downloads files of the selected TV to this computer, one at a time.
class Downloads : public QObject {
    Q_OBJECT

public:
    Downloads(const TvAccess& tvs, Pairing& pairing, FileDialogs& dialogs,
              QObject* parent = nullptr);
    ~Downloads() override;

    const DownloadState& state() const { return m_state; }

    // Asks the user where to, then does it.
    void downloadFile(const quiv::RemoteFile& file);
    // Ends the download under way, whatever it waits for, unless the file is taking its place.
    void cancelDownload();

Q_SIGNALS:
    void stateChanged();

private:
    Task<> download(RemoteFile file);
    Task<QUrl> chooseDestination(QString name);
    Task<> transfer(Tv tv, RemoteFile file, QUrl destination, DownloadState state);
    Task<> downloadSingle(Tv tv, RemoteFile file, QString destination);
    void progressed(const HttpProgress& progress);
    void end(const StatusMessage& message);
    void changeState(DownloadState state);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    FileDialogs& m_dialogs;
    DownloadState m_state;
    std::shared_ptr<DownloadPlace> m_place; // of the download under way, once it is open
    bool m_isCancelled = false;             // the download under way
    TaskSet m_tasks;
    Task<> m_transfer;
};

} // namespace quiv
