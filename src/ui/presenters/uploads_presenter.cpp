#include "ui/presenters/uploads_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const QByteArray StatusRole = "statusText";

QList<ListRole<UploadListItem>> itemRoles(const QString& selectedTvKey) {
    return {
        {"key",
         [](const UploadListItem& item) {
             return QVariant(item.id);
         }},
        {"fileName",
         [](const UploadListItem& item) {
             return QVariant(displayText(item.fileName));
         }},
        {"isUploading",
         [](const UploadListItem& item) {
             return QVariant(item.state == UploadListItemState::Uploading);
         }},
        {"isFailed",
         [](const UploadListItem& item) {
             return QVariant(item.state == UploadListItemState::Failed);
         }},
        {"progress",
         [](const UploadListItem& item) {
             return QVariant(item.progress);
         }},
        {StatusRole,
         [&selectedTvKey](const UploadListItem& item) {
             return QVariant(uploadStatusText(item, selectedTvKey));
         }},
    };
}

} // namespace

const QString& uploadItemKey(const UploadListItem& item) {
    return item.id;
}

QString uploadStatusText(const UploadListItem& item, const QString& selectedTvKey) {
    QString text;
    switch (item.state) {
    case UploadListItemState::Queued:
        text = u"Queued"_s;
        break;
    case UploadListItemState::Uploading:
        text = u"Uploading  "_s + formatPercent(item.progress) + u"  "_s +
               formatTransferSpeed(item.speedBytesPerSecond);
        break;
    case UploadListItemState::Waiting:
    case UploadListItemState::Failed:
        text = displayText(item.reason);
        break;
    }
    return item.tvKey == selectedTvKey ? text
                                       : u"To "_s + displayText(item.tvName) + u":  "_s + text;
}

UploadsPresenter::UploadsPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions), m_rows(itemRoles(m_selectedTvKey)) {}

QString UploadsPresenter::dropHint() const {
    return !m_selectedTvKey.isEmpty() ? u"Files will be added to the upload queue"_s
                                      : u"Select a TV first"_s;
}

void UploadsPresenter::show(const WindowState& state) {
    const QString key = state.selectedDevice ? endpointKey(*state.selectedDevice) : QString();
    if (publish(this, m_selectedTvKey, key, &UploadsPresenter::dropChanged))
        m_rows.refresh(StatusRole);
    const int before = count();
    m_rows.assign(state.uploads);
    if (count() != before)
        Q_EMIT countChanged();
}

void UploadsPresenter::cancel(const QString& id) {
    m_actions.cancelUploadJob(id);
}

void UploadsPresenter::retry(const QString& id) {
    m_actions.retryUploadJob(id);
}

void UploadsPresenter::setDropTargeted(bool isTargeted) {
    publish(this, m_isUploadDropTargeted, isTargeted, &UploadsPresenter::dropChanged);
}

bool UploadsPresenter::drop(const QList<QUrl>& urls) {
    setDropTargeted(false);
    return m_actions.queueDroppedFiles(urls);
}

} // namespace quiv
