#include "ui/presenters/uploads_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/action_menu_presenter.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto DownloadKey = u"download"_s;

QList<ListRole<QueueRow>> rowRoles() {
    return {
        {"key",
         [](const QueueRow& row) {
             return QVariant(row.key);
         }},
        {"upload",
         [](const QueueRow& row) {
             return QVariant::fromValue(row);
         }},
    };
}

QString uploadStatusText(const UploadListItem& item) {
    switch (item.state) {
    case UploadListItemState::Queued:
        return u"Queued"_s;
    case UploadListItemState::Uploading:
        return u"Uploading  "_s + formatPercent(item.progress) + u"  "_s +
               formatTransferSpeed(item.speedBytesPerSecond);
    case UploadListItemState::Waiting:
    case UploadListItemState::Failed:
        break;
    }
    return displayText(item.reason);
}

QString uploadSymbol(UploadListItemState state) {
    switch (state) {
    case UploadListItemState::Uploading:
        return u"arrow.up.circle.fill"_s;
    case UploadListItemState::Failed:
        return u"xmark.circle.fill"_s;
    default:
        return u"clock"_s;
    }
}

QueueRow uploadRow(const UploadListItem& item, const QString& selectedTvKey) {
    const QString text = uploadStatusText(item);
    const bool isForSelected = item.tvKey == selectedTvKey;
    return {.key = item.id,
            .fileName = displayText(item.fileName),
            .symbol = uploadSymbol(item.state),
            .statusText =
                isForSelected ? text : u"To "_s + displayText(item.tvName) + u":  "_s + text,
            .progress = item.progress,
            .isMoving = item.state == UploadListItemState::Uploading,
            .isFailed = item.state == UploadListItemState::Failed,
            .endLabel = item.state == UploadListItemState::Uploading ? u"Cancel"_s : u"Remove"_s};
}

QueueRow downloadRow(const DownloadState& download) {
    return {.key = DownloadKey,
            .fileName = displayText(download.currentDownloadFileName),
            .symbol = u"arrow.down.circle"_s,
            .statusText = u"From "_s + displayText(download.tvName) + u":  Downloading  "_s +
                          formatPercent(download.currentDownloadProgress),
            .progress = download.currentDownloadProgress,
            .isMoving = true,
            .endLabel = u"Cancel"_s};
}

} // namespace

const QString& queueRowKey(const QueueRow& row) {
    return row.key;
}

QList<QueueRow> queueRows(const WindowState& state) {
    QList<QueueRow> rows;
    if (state.download.isDownloading && !isOfSelectedTv(state.download, state))
        rows.append(downloadRow(state.download));
    const QString selectedKey = selectedTvKey(state);
    for (const UploadListItem& item : state.uploads)
        rows.append(uploadRow(item, selectedKey));
    return rows;
}

UploadsPresenter::UploadsPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions), m_rows(rowRoles()) {}

QString UploadsPresenter::dropHint() const {
    return !m_selectedTvKey.isEmpty() ? u"Files will be added to the upload queue"_s
                                      : u"Select a TV first"_s;
}

void UploadsPresenter::show(const WindowState& state) {
    publish(this, m_selectedTvKey, selectedTvKey(state), &UploadsPresenter::dropChanged);
    const int before = count();
    m_rows.assign(queueRows(state));
    if (count() != before)
        Q_EMIT countChanged();
}

void UploadsPresenter::cancel(const QString& key) {
    if (key == DownloadKey)
        m_actions.cancelDownload();
    else
        m_actions.cancelUploadJob(key);
}

void UploadsPresenter::retry(const QString& key) {
    m_actions.retryUploadJob(key);
}

bool UploadsPresenter::offerActions(const QString& key, ActionMenuPresenter& menu) {
    const auto found = std::ranges::find(m_rows.rows(), key, queueRowKey);
    if (found == m_rows.rows().end())
        return false;
    QList<ActionMenuEntry> entries;
    if (found->isFailed)
        entries.append({u"Try Again"_s, u"arrow.clockwise"_s, true, [this, key] {
                            retry(key);
                        }});
    entries.append({found->endLabel, u"xmark"_s, true, [this, key] {
                        cancel(key);
                    }});
    menu.offer(found->fileName, entries);
    return true;
}

bool UploadsPresenter::dragEntered(const QList<QUrl>& urls) {
    setDropTargeted(std::ranges::any_of(urls, &QUrl::isLocalFile));
    return m_isUploadDropTargeted;
}

void UploadsPresenter::dragLeft() {
    setDropTargeted(false);
}

void UploadsPresenter::setDropTargeted(bool isTargeted) {
    publish(this, m_isUploadDropTargeted, isTargeted, &UploadsPresenter::dropChanged);
}

bool UploadsPresenter::drop(const QList<QUrl>& urls) {
    setDropTargeted(false);
    return m_actions.queueDroppedFiles(urls);
}

} // namespace quiv
