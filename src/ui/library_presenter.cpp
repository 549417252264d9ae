#include "ui/library_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/storage_badges.h"

namespace quiv {

namespace {

QList<ListRole<LibraryRow>> rowRoles() {
    return {
        {"title",
         [](const LibraryRow& row) {
             return QVariant(displayText(row.group.title));
         }},
        {"subtitleText",
         [](const LibraryRow& row) {
             return QVariant(subtitleCountText(row.group, std::nullopt));
         }},
        {"storageBadge",
         [](const LibraryRow& row) {
             return QVariant::fromValue(storageLocationBadge(row.storageLocation));
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
    if (counts.isLoading && counts.groups == 0)
        return Phase::Loading;
    if (counts.visibleGroups > 0)
        return Phase::List;
    return counts.hasQuery ? Phase::NoResults : Phase::Empty;
}

LibraryPresenter::LibraryPresenter(QObject* parent) : QObject(parent), m_rows(rowRoles()) {}

QString LibraryPresenter::loadingText() const {
    const QString name = m_selected ? displayText(m_selected->name) : QString();
    return QStringLiteral("Loading library from ") + name + QStringLiteral("...");
}

QString LibraryPresenter::noResultsText() const {
    return QStringLiteral("No files match \"") + displayText(m_searchText.trimmed()) + u'"';
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
    update();
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
    const LibraryCounts counts{m_selected.has_value(), m_isLoading,
                               !m_searchText.trimmed().isEmpty(), m_groups.size(),
                               m_rows.rows().size()};
    publish(this, m_phase, libraryPhase(counts), &LibraryPresenter::phaseChanged);
}

} // namespace quiv
