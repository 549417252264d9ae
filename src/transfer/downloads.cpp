#include "transfer/downloads.h"

#include "net/pairing.h"
#include "platform/async/background.h"
#include "platform/dialogs/file_dialogs.h"
#include "platform/publish.h"
#include "transfer/download_names.h"
#include "transfer/download_place.h"
#include "transfer/pending_files.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds IdleTimeout = 2min;

QString downloadingMessage(const DownloadState& state) {
    const QString which = state.fileCount > 1
                              ? u" (%1 of %2)"_s.arg(state.fileNumber).arg(state.fileCount)
                              : QString();
    return u"Downloading "_s + state.currentDownloadFileName + which + u"... "_s +
           QString::number(static_cast<int>(state.currentDownloadProgress * 100)) + u'%';
}

StatusMessage doneMessage(const QList<RemoteFile>& files, int done, const StatusMessage& failure) {
    if (failure.text.isEmpty()) {
        return {files.size() == 1 ? u"Downloaded "_s + files.constFirst().name
                                  : u"Downloaded %1 files"_s.arg(done)};
    }
    StatusMessage message = failure;
    if (files.size() > 1) {
        message.text = u"Downloaded %1 of %2 files. "_s.arg(done).arg(files.size()) + failure.text;
    }
    return message;
}

StatusMessage downloadFailure(const QString& name, const Error& error) {
    if (isCancellation(error))
        return {u"Download canceled"_s};
    const QString what = u"Download failed for "_s + name + u": "_s;
    const auto* failure = dynamic_cast<const HttpError*>(&error);
    if (failure && failure->code() == HttpErrorCode::BadServerResponse)
        return failureMessage(what + u"Download failed: invalid server response"_s);
    return failureMessage(what, error);
}

} // namespace

QString downloadErrorMessage(int status, const std::optional<QByteArray>& body) {
    if (const QString words = serverWords(body.value_or(QByteArray())); !words.isEmpty())
        return words;
    switch (status) {
    case 401:
        return u"Pairing required: enter the 3-digit code shown on TV."_s;
    case 429:
        return u"Too many auth attempts. Wait before trying again."_s;
    default:
        return u"Download failed (HTTP %1)."_s.arg(status);
    }
}

Downloads::Downloads(const TvAccess& tvs, Pairing& pairing, FileDialogs& dialogs,
                     PendingFiles& pending, QObject* parent)
    : QObject(parent), m_tvs(tvs), m_pairing(pairing), m_dialogs(dialogs), m_pending(pending) {}

Downloads::~Downloads() = default;

void Downloads::downloadFiles(const QList<RemoteFile>& files) {
    if (!files.isEmpty())
        m_tasks.add(download(files));
}

// The TV may have to say first that it still knows this computer.
Task<bool> Downloads::isAllowed(QList<RemoteFile> files) {
    QList<FileRequest> requests;
    for (const RemoteFile& file : files)
        requests.append({FileRequest::Kind::Download, m_tvs.selected().key(), file.name});
    const PendingFiles::Wait wait(m_pending, requests);
    co_return co_await m_pairing.ensureControlPairing(u"download"_s);
}

Task<> Downloads::download(QList<RemoteFile> files) {
    const auto tv = m_tvs.current();
    if (!tv) {
        m_tvs.say(u"Select a TV first"_s);
        co_return;
    }
    DownloadState state;
    state.isDownloading = true;
    state.tvKey = m_tvs.selected().key();
    state.tvName = m_tvs.selected().name();
    state.fileCount = static_cast<int>(files.size());
    const bool mayDownload = co_await isAllowed(files);
    if (!mayDownload)
        co_return;
    if (m_state.isDownloading) {
        m_tvs.say(u"Another download is already in progress"_s);
        co_return;
    }
    const QUrl destination = co_await chooseDestination(files);
    if (destination.isEmpty()) {
        m_tvs.say(u"Download canceled"_s);
        co_return;
    }
    if (!destination.isLocalFile()) {
        m_tvs.say(failureMessage(u"Not downloaded, because that place is not on this computer. "
                                 "Choose a folder of this computer."_s));
        co_return;
    }
    if (m_state.isDownloading) { // begun while the user was choosing
        m_tvs.say(u"Another download is already in progress"_s);
        co_return;
    }
    m_transfer = transfer(tv->whicheverIsSelected(), files, destination.toLocalFile(), state);
}

Task<QUrl> Downloads::chooseDestination(QList<RemoteFile> files) {
    using Purpose = FileDialogRequest::Purpose;
    FileDialogRequest request(Purpose::Folder, u"Download from TV"_s, u"Download Here"_s);
    if (files.size() == 1)
        request = {Purpose::Save, u"Download from TV"_s, u"Download"_s,
                   proposedDownloadName(files.constFirst().name)};
    const FileDialogAnswer answer = co_await m_dialogs.ask(request);
    co_return answer && !answer->isEmpty() ? answer->constFirst() : QUrl();
}

Task<> Downloads::transfer(Tv tv, QList<RemoteFile> files, QString destination,
                           DownloadState state) {
    m_isCancelled = false;
    m_isLast = false;
    StatusMessage failure; // the latest
    int done = 0;
    for (const RemoteFile& file : files) {
        state.currentDownloadFileName = file.name;
        changeState(state);
        m_tvs.beginProgress(downloadingMessage(state));
        try {
            co_await downloadSingle(tv, file, destination);
            ++done;
        } catch (const Error& error) {
            failure = downloadFailure(file.name, error);
        }
        m_place.reset();
        if (m_isLast)
            break;
        ++state.fileNumber;
    }
    StatusMessage message = doneMessage(files, done, failure);
    if (done > 0) // a folder ends with a slash
        message.file = QUrl::fromLocalFile(files.size() == 1 ? destination : destination + u'/');
    end(message);
    Q_EMIT finished(message);
}

Task<> Downloads::downloadSingle(Tv tv, RemoteFile file, QString destination) {
    if (destination.isEmpty())
        throw PlaceError(u"Download failed: missing destination path"_s);
    const bool isFolder = m_state.fileCount > 1;
    const auto opening = [destination, isFolder, name = proposedDownloadName(file.name)] {
        return isFolder
                   ? DownloadPlace::at(destination + u'/' + name, DownloadPlace::Existing::Kept)
                   : DownloadPlace::at(destination);
    };
    m_place = co_await onDisk(opening);
    const QueryItems query{{u"name"_s, file.name}};
    HttpRequest request = tv.request("GET", u"api/files/download"_s, query);
    request.replyFile = m_place->file();
    if (file.sizeBytes >= 1)
        request.replyFileSize = file.sizeBytes;
    request.timeouts = {std::nullopt, IdleTimeout};
    request.onProgress = [this](const HttpProgress& progress) {
        progressed(progress);
    };
    const TvReply reply = co_await tv.send(std::move(request));
    if (!reply.isSuccess())
        tv.refuse(reply, downloadErrorMessage(reply.status, std::nullopt));
    const auto committing = [place = m_place] {
        return place->commit();
    };
    co_await onDisk(committing);
}

void Downloads::progressed(const HttpProgress& progress) {
    if (progress.receivedTotal < 1 || m_isCancelled)
        return;
    DownloadState state = m_state;
    state.currentDownloadProgress = std::clamp(static_cast<double>(progress.received) /
                                                   static_cast<double>(progress.receivedTotal),
                                               0.0, 1.0);
    m_tvs.sayProgress(downloadingMessage(state));
    changeState(std::move(state));
}

void Downloads::cancelDownload() {
    m_isLast = true;
    if (!m_state.isDownloading || m_isCancelled || (m_place && !m_place->withdraw()))
        return;
    m_isCancelled = true;
    m_tvs.say(u"Canceling download..."_s);
    const auto cancel = [this] {
        if (!m_isCancelled)
            return; // it ended meanwhile
        m_transfer.cancel();
        end({u"Download canceled"_s});
    };
    QMetaObject::invokeMethod(this, cancel, Qt::QueuedConnection);
}

void Downloads::end(const StatusMessage& message) {
    m_place.reset();
    m_isCancelled = false;
    m_tvs.say(message);
    changeState({});
}

void Downloads::changeState(DownloadState state) {
    publish(this, m_state, std::move(state), &Downloads::stateChanged);
}

} // namespace quiv
