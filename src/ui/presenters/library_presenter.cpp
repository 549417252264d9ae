#include "ui/presenters/library_presenter.h"

#include "platform/publish.h"
#include "transfer/deletion.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const QByteArray ContentRole = "content";

QList<ListRole<LibraryRow>> rowRoles(const RowContext& context) {
    return {
        {"key",
         [](const LibraryRow& row) {
             return QVariant(libraryRowKey(row));
         }},
        {ContentRole,
         [&context](const LibraryRow& row) {
             return QVariant::fromValue(fileGroupRowState(row, context));
         }},
    };
}

std::optional<QString> keyOf(const std::optional<TVEndpoint>& device) {
    return device ? std::optional(endpointKey(*device)) : std::nullopt;
}

} // namespace

const QString& libraryRowKey(const LibraryRow& row) {
    return row.group.id;
}

LibraryPresenter::Phase libraryPhase(const LibraryCounts& counts) {
    using Phase = LibraryPresenter::Phase;
    if (!counts.hasTv)
        return Phase::NoTv;
    if (counts.visibleGroups == 0 && counts.hasUploads)
        return Phase::List;
    if (counts.isLoading && counts.groups == 0)
        return Phase::Loading;
    if (counts.visibleGroups > 0)
        return Phase::List;
    return counts.hasQuery ? Phase::NoResults : Phase::Empty;
}

LibraryPresenter::LibraryPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions), m_downloadMenu(actions), m_rows(rowRoles(m_context)) {}

QString LibraryPresenter::loadingText() const {
    const QString name = m_selected ? displayText(m_selected->name) : QString();
    return u"Loading library from "_s + name + u"..."_s;
}

QString LibraryPresenter::noResultsText() const {
    return u"No files match \""_s + displayText(m_searchText.trimmed()) + u'"';
}

void LibraryPresenter::setSelectedDevice(const std::optional<TVEndpoint>& device) {
    const bool isAnother = keyOf(device) != keyOf(m_selected);
    publish(this, m_selected, device, &LibraryPresenter::selectedDeviceChanged);
    if (isAnother) {
        publish(this, m_searchText, QString(), &LibraryPresenter::searchTextChanged);
        m_groups.clear();
        m_rows.reset({});
    }
    update();
}

void LibraryPresenter::setContent(const LibraryContent& content) {
    m_groups = content.groupedFiles;
    RowContext context = m_context;
    context.isUsbConnected = content.usbStorage && content.usbStorage->isConnected;
    setContext(std::move(context));
    update();
}

void LibraryPresenter::setPlayback(const std::optional<PlaybackResponse>& playback) {
    RowContext context = m_context;
    context.playback = rowPlayback(playback);
    setContext(std::move(context));
}

void LibraryPresenter::setMove(const MoveState& move) {
    RowContext context = m_context;
    context.move = move;
    setContext(std::move(context));
}

void LibraryPresenter::setUploads(const QSet<QString>& matchKeys) {
    RowContext context = m_context;
    context.uploadMatchKeys = matchKeys;
    setContext(std::move(context));
    update();
}

void LibraryPresenter::setDownload(const DownloadState& download) {
    RowContext context = m_context;
    context.download = download;
    setContext(std::move(context));
}

void LibraryPresenter::setThumbnails(const std::optional<ThumbnailAddress>& thumbnails) {
    RowContext context = m_context;
    context.thumbnails = thumbnails;
    setContext(std::move(context));
}

void LibraryPresenter::setContext(RowContext context) {
    if (context == m_context)
        return;
    m_context = std::move(context);
    m_rows.refresh(ContentRole);
}

void LibraryPresenter::playOrPause(const QString& key) {
    const LibraryRow* row = rowOf(key);
    if (row && row->group.video && !fileGroupRowState(*row, m_context).isUploading)
        m_actions.togglePlayback(row->group.video->name);
}

void LibraryPresenter::moveStorage(const QString& key) {
    if (const LibraryRow* row = rowOf(key); row && row->group.video)
        m_actions.startMove(row->group.video->name, otherStorage(row->storageLocation));
}

void LibraryPresenter::attachSubtitle(const QString& key) {
    if (const LibraryRow* row = rowOf(key); row && row->group.video)
        Q_EMIT subtitleRequested(row->group.video->name);
}

bool LibraryPresenter::offerDownloads(const QString& key) {
    const LibraryRow* row = rowOf(key);
    const bool isOffered = row && fileGroupRowState(*row, m_context).canDownload;
    if (isOffered)
        m_downloadMenu.setFiles(filesOf(row->group));
    return isOffered;
}

void LibraryPresenter::cancelDownload() {
    m_actions.cancelDownload();
}

void LibraryPresenter::requestDelete(const QString& key) {
    if (const LibraryRow* row = rowOf(key))
        Q_EMIT deleteRequested(row->group);
}

const LibraryRow* LibraryPresenter::rowOf(const QString& key) const {
    const QList<LibraryRow>& rows = m_rows.rows();
    const auto found = std::ranges::find(rows, key, libraryRowKey);
    return found == rows.end() ? nullptr : &*found;
}

void LibraryPresenter::setLoadInProgress(bool isLoading) {
    m_isLoading = isLoading;
    update();
}

void LibraryPresenter::search(const QString& text) {
    if (publish(this, m_searchText, text, &LibraryPresenter::searchTextChanged))
        update();
}

void LibraryPresenter::update() {
    m_rows.assign(filteredRows(m_groups, m_searchText));
    const LibraryCounts counts{
        m_selected.has_value(), m_isLoading,          !m_searchText.trimmed().isEmpty(),
        m_groups.size(),        m_rows.rows().size(), !m_context.uploadMatchKeys.isEmpty()};
    publish(this, m_phase, libraryPhase(counts), &LibraryPresenter::phaseChanged);
}

} // namespace quiv
