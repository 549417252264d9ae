#pragma once

#include "net/tv.h"
#include "net/wire_records.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <stop_token>

namespace quiv {

class FileDialogs;
class Pairing;
struct HttpProgress;

// The file that is being downloaded.
struct DownloadState {
    bool isDownloading = false;
    double currentDownloadProgress = 0; // 0 to 1
    QString currentDownloadFileName;    // empty when idle

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
    void cancelDownload();

Q_SIGNALS:
    void stateChanged();

private:
    Task<> download(RemoteFile file);
    Task<QUrl> chooseDestination(QString name);
    Task<> transfer(Tv tv, RemoteFile file, QUrl destination);
    Task<> downloadSingle(Tv tv, RemoteFile file, QString destination);
    void progressed(const HttpProgress& progress);
    void changeState(DownloadState state);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    FileDialogs& m_dialogs;
    DownloadState m_state;
    std::stop_source m_stop; // of the download under way
    TaskSet m_tasks;
};

} // namespace quiv
