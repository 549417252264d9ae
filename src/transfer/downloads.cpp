#include "transfer/downloads.h"

#include "net/pairing.h"
#include "platform/async/background.h"
#include "platform/dialogs/file_dialogs.h"
#include "platform/publish.h"
#include "transfer/download_names.h"
#include "transfer/download_place.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds IdleTimeout = 2min;

QString downloadingMessage(const QString& name, double progress) {
    return u"Downloading "_s + name + u"... "_s +
           QString::number(static_cast<int>(progress * 100)) + u'%';
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

Downloads::Downloads(const TvAccess& tvs, Pairing& pairing, FileDialogs& dialogs, QObject* parent)
    : QObject(parent), m_tvs(tvs), m_pairing(pairing), m_dialogs(dialogs) {}

Downloads::~Downloads() = default;

void Downloads::downloadFile(const RemoteFile& file) {
    m_tasks.add(download(file));
}

Task<> Downloads::download(RemoteFile file) {
    const auto tv = m_tvs.current();
    if (!tv) {
        m_tvs.say(u"Select a TV first"_s);
        co_return;
    }
    const DownloadState state{true, 0, file.name, m_tvs.selected().key(), m_tvs.selected().name()};
    const bool isAllowed = co_await m_pairing.ensureControlPairing(u"download"_s);
    if (!isAllowed)
        co_return;
    if (m_state.isDownloading) {
        m_tvs.say(u"Another download is already in progress"_s);
        co_return;
    }
    const QUrl destination = co_await chooseDestination(file.name);
    if (destination.isEmpty()) {
        m_tvs.say(u"Download canceled"_s);
        co_return;
    }
    if (m_state.isDownloading) { // begun while the user was choosing
        m_tvs.say(u"Another download is already in progress"_s);
        co_return;
    }
    m_transfer = transfer(tv->whicheverIsSelected(), file, destination, state);
}

Task<QUrl> Downloads::chooseDestination(QString name) {
    const FileDialogRequest request(FileDialogRequest::Purpose::Save, u"Download from TV"_s,
                                    u"Download"_s, proposedDownloadName(name));
    const FileDialogAnswer answer = co_await m_dialogs.ask(request);
    co_return answer && !answer->isEmpty() ? answer->constFirst() : QUrl();
}

Task<> Downloads::transfer(Tv tv, RemoteFile file, QUrl destination, DownloadState state) {
    const QString name = file.name;
    m_isCancelled = false;
    changeState(std::move(state));
    m_tvs.beginProgress(downloadingMessage(name, 0));
    StatusMessage message{.text = u"Downloaded "_s + name, .file = destination};
    try {
        co_await downloadSingle(tv, file, destination.toLocalFile());
    } catch (const Error& error) {
        message = downloadFailure(name, error);
    }
    end(message);
}

Task<> Downloads::downloadSingle(Tv tv, RemoteFile file, QString destination) {
    if (destination.isEmpty())
        throw PlaceError(u"Download failed: missing destination path"_s);
    const auto opening = [destination] {
        return DownloadPlace::at(destination);
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
    m_tvs.sayProgress(
        downloadingMessage(state.currentDownloadFileName, state.currentDownloadProgress));
    changeState(std::move(state));
}

void Downloads::cancelDownload() {
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
