#include "ui/presenters/library_presenter.h"

#include "platform/async/background.h"
#include "platform/publish.h"
#include "transfer/deletion.h"
#include "transfer/upload_queue_rules.h"
#include "ui/display_format.h"
#include "ui/presenters/library_menus.h"
#include "ui/presenters/uploads_presenter.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const QByteArray ContentRole = "content";

// Lists with more rows, before and after together, are not compared within a frame.
constexpr qsizetype LongList = 4000;

QList<ListRole<LibraryRow>> rowRoles(const WindowState& state, const QSet<QString>& uploadKeys,
                                     const RowSelection& selection) {
    return {
        {"key",
         [](const LibraryRow& row) {
             return QVariant(libraryRowKey(row));
         }},
        {ContentRole,
         [&state, &uploadKeys, &selection](const LibraryRow& row) {
             FileGroupRowState content = fileGroupRowState(row, state, uploadKeys);
             content.isSelected = selection.keys.contains(row.group.id);
             return QVariant::fromValue(content);
         }},
    };
}

QSet<QString> uploadKeysOf(const WindowState& state) {
    return uploadMatchKeys(state.uploads, selectedTvKey(state));
}

QString foundTitlesText(int count) {
    return u"Found "_s + QString::number(count) + (count == 1 ? u" title"_s : u" titles"_s);
}

// Whether nothing differs but how far the uploads have come.
bool haveSameNames(const QList<UploadListItem>& a, const QList<UploadListItem>& b) {
    return a.isSharedWith(b) ||
           std::ranges::equal(a, b, [](const UploadListItem& one, const UploadListItem& other) {
               return one.fileName == other.fileName && one.state == other.state &&
                      one.tvKey == other.tvKey;
           });
}

} // namespace

LibraryPresenter::Phase libraryPhase(const LibraryCounts& counts) {
    using Phase = LibraryPresenter::Phase;
    if (!counts.hasTv)
        return Phase::NoTv;
    if (counts.visibleGroups == 0 && counts.hasUploads)
        return Phase::List;
    if (counts.isLoading && counts.groups == 0)
        return Phase::Loading;
    if (counts.hasFailed && counts.groups == 0)
        return Phase::Failed;
    if (counts.visibleGroups > 0)
        return Phase::List;
    return counts.hasQuery ? Phase::NoResults : Phase::Empty;
}

LibraryPresenter::LibraryPresenter(WindowActions& actions, UploadsPresenter& uploads,
                                   QObject* parent)
    : QObject(parent),
      m_actions(actions),
      m_uploads(uploads),
      m_rows(rowRoles(m_state, m_uploadKeys, m_selection)),
      m_entries(*uploads.rows(), m_rows) {}

QString LibraryPresenter::loadingText() const {
    const auto& tv = m_state.selectedDevice;
    const QString name = tv ? displayText(tv->name) : QString();
    return u"Loading library from "_s + name + u"..."_s;
}

QString LibraryPresenter::noResultsText() const {
    return u"No files match \""_s + displayText(m_searchText.trimmed()) + u'"';
}

QString LibraryPresenter::failureText() const {
    return displayText(m_state.libraryFailure);
}

void LibraryPresenter::show(const WindowState& state) {
    const WindowState before = std::exchange(m_state, state);
    const bool isAnotherTv = !isSameTv(before, state);
    bool isChanged = !isSameForRows(before, state);
    if (isAnotherTv || !haveSameNames(before.uploads, state.uploads)) {
        const QSet<QString> keysBefore = std::exchange(m_uploadKeys, uploadKeysOf(state));
        isChanged |= keysBefore != m_uploadKeys;
    }
    if (before.selectedDevice != state.selectedDevice)
        Q_EMIT selectedDeviceChanged();
    if (before.libraryFailure != state.libraryFailure)
        Q_EMIT failureTextChanged();
    if (isAnotherTv) {
        publish(this, m_searchText, QString(), &LibraryPresenter::searchTextChanged);
        m_selection = {};
        m_rows.reset({});
    }
    if (isChanged)
        m_rows.refresh(ContentRole);
    // Comparing a large library takes as long as showing it.
    if (isAnotherTv || !before.content.groupedFiles.isSharedWith(state.content.groupedFiles))
        filterRows();
    if (!m_isFiltering) // the phase follows the rows
        updatePhase();
}

void LibraryPresenter::playOrPause(const QString& key) {
    const LibraryRow* row = rowOf(key);
    if (row && fileGroupRowState(*row, m_state, m_uploadKeys).canPlay)
        m_actions.startPrimaryPlayback(row->group.video->name, row->group.title);
}

void LibraryPresenter::moveStorage(const QString& key) {
    if (const LibraryRow* row = rowOf(key);
        row && row->group.video && m_state.isReachable &&
        !isWaiting(row->group, FileRequest::Kind::Move, m_state))
        m_actions.startMove(row->group.video->name, otherStorage(row->storageLocation));
}

void LibraryPresenter::attachSubtitle(const QString& key) {
    if (const LibraryRow* row = rowOf(key); row && row->group.video)
        Q_EMIT subtitleRequested(row->group.video->name);
}

void LibraryPresenter::cancelDownload() {
    m_actions.cancelDownload();
}

void LibraryPresenter::select(const QString& key, int modifiers) {
    setSelection(selectionAfterPick(m_selection, m_rows.rows(), key,
                                    Qt::KeyboardModifiers::fromInt(modifiers)));
}

void LibraryPresenter::selectAll() {
    setSelection(selectionOfAll(m_rows.rows()));
}

bool LibraryPresenter::clearSelection() {
    const bool hasSelection = !m_selection.keys.isEmpty();
    setSelection({});
    return hasSelection;
}

void LibraryPresenter::setSelection(const RowSelection& selection) {
    if (std::exchange(m_selection, selection).keys != selection.keys)
        m_rows.refresh(ContentRole);
}

int LibraryPresenter::entryBeginningWith(const QString& typed, int current) const {
    const int start = m_entries.libraryStart();
    const auto found = static_cast<int>(rowBeginningWith(m_rows.rows(), typed, current - start));
    return found < 0 ? current : start + found;
}

QList<FileGroup> LibraryPresenter::groupsActedOn(const QString& key) const {
    QList<FileGroup> groups;
    if (!m_state.isReachable)
        return groups;
    for (const LibraryRow& row : rowsActedOn(m_selection, m_rows.rows(), key)) {
        if (!isUploadInProgress(row.group, m_uploadKeys) &&
            !isWaiting(row.group, FileRequest::Kind::Deletion, m_state))
            groups.append(row.group);
    }
    return groups;
}

bool LibraryPresenter::offerDownloads(const QString& key) {
    const QList<FileGroup> groups = groupsActedOn(key);
    if (groups.size() == 1 && !filesOf(groups.constFirst()).isEmpty()) {
        m_menu.offer(u"Download"_s, downloadEntries(groups.constFirst(), m_actions));
        return true;
    }
    if (groups.size() > 1)
        m_actions.downloadFiles(filesOf(groups));
    return false;
}

bool LibraryPresenter::offerActions(const QString& key) {
    const LibraryRow* row = rowOf(key);
    if (!row)
        return false;
    if (rowsActedOn(m_selection, m_rows.rows(), key).size() > 1) {
        m_menu.offer(u"Selection"_s, selectionEntries(groupsActedOn(key), key, *this, m_actions));
        return true;
    }
    const FileGroupRowState state = fileGroupRowState(*row, m_state, m_uploadKeys);
    m_menu.offer(state.title, rowEntries(row->group, state, *this, m_actions));
    return true;
}

bool LibraryPresenter::offerUploadActions(const QString& key) {
    return m_uploads.offerActions(key, m_menu);
}

void LibraryPresenter::requestDelete(const QString& key) {
    if (const QList<FileGroup> groups = groupsActedOn(key); !groups.isEmpty())
        Q_EMIT deleteRequested(groups);
}

const LibraryRow* LibraryPresenter::rowOf(const QString& key) const {
    const QList<LibraryRow>& rows = m_rows.rows();
    const auto found = std::ranges::find(rows, key, libraryRowKey);
    return found == rows.end() ? nullptr : &*found;
}

void LibraryPresenter::search(const QString& text) {
    if (!publish(this, m_searchText, text, &LibraryPresenter::searchTextChanged))
        return;
    m_hasNewSearch = true;
    filterRows();
}

void LibraryPresenter::filterRows() {
    m_filtering = {};
    RowsRequest request{m_rows.rows(), m_state.content.groupedFiles, m_searchText, m_selection};
    m_isFiltering = request.shown.size() + request.library.size() > LongList;
    if (m_isFiltering)
        m_filtering = filteringRows(std::move(request));
    else
        showRows(shownRows(request), m_selection);
}

Task<> LibraryPresenter::filteringRows(RowsRequest request) {
    const RowSelection selection = request.selection;
    auto work = [request = std::move(request)] {
        return shownRows(request);
    };
    ShownRows rows = co_await inBackground(work);
    m_isFiltering = false;
    QList<LibraryRow> old = showRows(std::move(rows), selection);
    // Freeing 100,000 rows takes longer than a frame.
    runInBackground([old = std::move(old), work = std::move(work)] {});
}

QList<LibraryRow> LibraryPresenter::showRows(ShownRows rows, const RowSelection& selectionBefore) {
    QList<LibraryRow> old = m_rows.apply(std::move(rows.rows), rows.change);
    const bool isSameSelection = m_selection == selectionBefore;
    setSelection(isSameSelection ? rows.selection : selectionAmong(m_selection, m_rows.rows()));
    const bool isSearching = !m_searchText.trimmed().isEmpty();
    publish(this, m_foundText, isSearching ? foundTitlesText(m_rows.rowCount()) : QString(),
            &LibraryPresenter::foundTextChanged);
    updatePhase();
    if (std::exchange(m_hasNewSearch, false))
        Q_EMIT searched();
    return old;
}

void LibraryPresenter::updatePhase() {
    const LibraryCounts counts{.hasTv = m_state.selectedDevice.has_value(),
                               .isLoading = m_state.isLibraryLoading,
                               .hasFailed = !m_state.libraryFailure.isEmpty(),
                               .hasQuery = !m_searchText.trimmed().isEmpty(),
                               .groups = m_state.content.groupedFiles.size(),
                               .visibleGroups = m_rows.rows().size(),
                               .hasUploads = !m_state.uploads.isEmpty()};
    publish(this, m_phase, libraryPhase(counts), &LibraryPresenter::phaseChanged);
}

} // namespace quiv
