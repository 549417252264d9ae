#include "ui/presenters/uploads_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto DownloadKey = u"download"_s;

template <auto Member> ListRole<QueueRow> role(const QByteArray& name) {
    return {name, [](const QueueRow& row) {
                return QVariant(row.*Member);
            }};
}

QList<ListRole<QueueRow>> rowRoles() {
    return {role<&QueueRow::key>("key"),           role<&QueueRow::fileName>("fileName"),
            role<&QueueRow::symbol>("symbol"),     role<&QueueRow::statusText>("statusText"),
            role<&QueueRow::progress>("progress"), role<&QueueRow::isMoving>("isMoving"),
            role<&QueueRow::isFailed>("isFailed")};
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
            .isFailed = item.state == UploadListItemState::Failed};
}

QueueRow downloadRow(const DownloadState& download) {
    return {.key = DownloadKey,
            .fileName = displayText(download.currentDownloadFileName),
            .symbol = u"arrow.down.circle"_s,
            .statusText = u"From "_s + displayText(download.tvName) + u":  Downloading  "_s +
                          formatPercent(download.currentDownloadProgress),
            .progress = download.currentDownloadProgress,
            .isMoving = true};
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

void UploadsPresenter::setDropTargeted(bool isTargeted) {
    publish(this, m_isUploadDropTargeted, isTargeted, &UploadsPresenter::dropChanged);
}

bool UploadsPresenter::drop(const QList<QUrl>& urls) {
    setDropTargeted(false);
    return m_actions.queueDroppedFiles(urls);
}

} // namespace quiv
