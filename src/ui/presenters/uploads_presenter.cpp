#include "ui/presenters/uploads_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QList<ListRole<UploadListItem>> itemRoles() {
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
        {"progress",
         [](const UploadListItem& item) {
             return QVariant(item.progress);
         }},
        {"statusText",
         [](const UploadListItem& item) {
             return QVariant(uploadStatusText(item));
         }},
    };
}

} // namespace

const QString& uploadItemKey(const UploadListItem& item) {
    return item.id;
}

QString uploadStatusText(const UploadListItem& item) {
    if (item.state == UploadListItemState::Queued)
        return u"Queued"_s;
    return u"Uploading  "_s + formatPercent(item.progress) + u"  "_s +
           formatTransferSpeed(item.speedBytesPerSecond);
}

UploadsPresenter::UploadsPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions), m_rows(itemRoles()) {}

QString UploadsPresenter::dropHint() const {
    return m_hasTv ? u"Files will be added to the upload queue"_s : u"Select a TV first"_s;
}

void UploadsPresenter::show(const WindowState& state) {
    publish(this, m_hasTv, state.selectedDevice.has_value(), &UploadsPresenter::dropChanged);
    const int before = count();
    m_rows.assign(state.uploads);
    if (count() != before)
        Q_EMIT countChanged();
}

void UploadsPresenter::cancel(const QString& id) {
    m_actions.cancelUploadJob(id);
}

void UploadsPresenter::setDropTargeted(bool isTargeted) {
    publish(this, m_isUploadDropTargeted, isTargeted, &UploadsPresenter::dropChanged);
}

bool UploadsPresenter::drop(const QList<QUrl>& urls) {
    setDropTargeted(false);
    return m_actions.queueDroppedFiles(urls);
}

} // namespace quiv
