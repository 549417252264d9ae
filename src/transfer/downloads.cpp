#include "transfer/downloads.h"

#include "net/pairing.h"
#include "net/request_layer.h"
#include "net/status_line.h"
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

constexpr std::chrono::seconds TransferTimeout = 1h;
constexpr std::chrono::seconds IdleTimeout = 2min;

QString downloadingMessage(const QString& name, double progress) {
    return u"Downloading "_s + name + u"... "_s +
           QString::number(static_cast<int>(progress * 100)) + u'%';
}

QString outcomeMessage(const QString& name, const Error& error) {
    if (isCancellation(error))
        return u"Download canceled"_s;
    const auto* failure = dynamic_cast<const HttpError*>(&error);
    const bool isNoHttp = failure && failure->code() == HttpErrorCode::BadServerResponse;
    return u"Download failed for "_s + name + u": "_s +
           (isNoHttp ? u"Download failed: invalid server response"_s : error.description());
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

Downloads::Downloads(const Parts& parts, FileDialogs& dialogs, QObject* parent)
    : QObject(parent),
      m_requests(parts.requests),
      m_pairing(parts.pairing),
      m_selected(parts.selected),
      m_status(parts.status),
      m_dialogs(dialogs) {}

Downloads::~Downloads() = default;

void Downloads::downloadFile(const RemoteFile& file) {
    m_tasks.add(download(file.name));
}

Task<> Downloads::download(QString name) {
    const auto base = m_selected.baseURL();
    if (!base) {
        m_status.post(u"Select a TV first"_s);
        co_return;
    }
    const SelectedDevice::Guard guard(m_selected);
    auto pairing = m_pairing.ensureControlPairing(u"download"_s);
    const bool isAllowed = co_await std::move(pairing);
    if (!isAllowed)
        co_return;
    if (m_state.isDownloading) {
        m_status.post(u"Another download is already in progress"_s);
        co_return;
    }
    auto choosing = chooseDestination(name);
    const QUrl destination = co_await std::move(choosing);
    if (destination.isEmpty()) {
        m_status.post(u"Download canceled"_s);
        co_return;
    }
    if (m_state.isDownloading) { // begun while the user was choosing
        m_status.post(u"Another download is already in progress"_s);
        co_return;
    }
    auto transferring = transfer(name, *base, guard, destination);
    co_await std::move(transferring);
}

Task<QUrl> Downloads::chooseDestination(QString name) {
    auto asking = m_dialogs.ask({FileDialogRequest::Purpose::Save, u"Download from TV"_s,
                                 u"Download"_s, proposedDownloadName(name)});
    const FileDialogAnswer answer = co_await std::move(asking);
    co_return answer && !answer->isEmpty() ? answer->constFirst() : QUrl();
}

Task<> Downloads::transfer(QString name, QUrl base, SelectedDevice::Guard guard, QUrl destination) {
    changeState({true, 0, name});
    m_status.post(downloadingMessage(name, 0));
    m_stop = {};
    QString message = u"Downloaded "_s + name;
    try {
        auto downloading = downloadSingle(name, base, guard, destination.toLocalFile());
        co_await std::move(downloading);
    } catch (const Error& error) {
        message = outcomeMessage(name, error);
    }
    m_status.post(message);
    changeState({});
}

Task<> Downloads::downloadSingle(QString name, QUrl base, SelectedDevice::Guard guard,
                                 QString destination) {
    if (destination.isEmpty())
        throw PlaceError(u"Download failed: missing destination path"_s);
    const DownloadPlace place(destination);
    HttpRequest request = tvRequest("GET", base, u"api/files/download"_s, {{u"name"_s, name}});
    request.replyFile = place.temporaryFile();
    request.timeouts = {TransferTimeout, IdleTimeout};
    request.stop = m_stop.get_token();
    request.onProgress = [this](const HttpProgress& progress) {
        progressed(progress);
    };
    auto sending = m_requests.send(std::move(request), base);
    const HttpReply reply = co_await std::move(sending);
    if (!reply.isSuccess())
        m_requests.refuse(reply.status, downloadErrorMessage(reply.status, std::nullopt), guard);
    auto placing =
        inBackground([from = place.temporaryFile(), destination, stop = m_stop.get_token()] {
            return takeItsPlace(from, destination, stop);
        });
    const bool isPlaced = co_await std::move(placing);
    if (!isPlaced)
        throw HttpError(HttpErrorCode::Cancelled);
}

void Downloads::progressed(const HttpProgress& progress) {
    if (progress.receivedTotal < 1 || m_stop.stop_requested())
        return;
    DownloadState state = m_state;
    state.currentDownloadProgress = std::clamp(static_cast<double>(progress.received) /
                                                   static_cast<double>(progress.receivedTotal),
                                               0.0, 1.0);
    m_status.post(downloadingMessage(state.currentDownloadFileName, state.currentDownloadProgress));
    changeState(std::move(state));
}

void Downloads::cancelDownload() {
    if (!m_state.isDownloading)
        return;
    m_stop.request_stop();
    m_status.post(u"Canceling download..."_s);
}

void Downloads::changeState(DownloadState state) {
    publish(this, m_state, std::move(state), &Downloads::stateChanged);
}

} // namespace quiv
