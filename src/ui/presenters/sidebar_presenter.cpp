#include "ui/presenters/sidebar_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QList<ListRole<TvTile>> tileRoles() {
    return {
        {"endpointKey",
         [](const TvTile& tile) {
             return QVariant(tile.key);
         }},
        {"name",
         [](const TvTile& tile) {
             return QVariant(displayText(tile.device.name));
         }},
        {"address",
         [](const TvTile& tile) {
             return QVariant(displayText(tile.key));
         }},
        {"description",
         [](const TvTile& tile) {
             return QVariant(displayText(tileDescription(tile.device)));
         }},
        {"isSelected",
         [](const TvTile& tile) {
             return QVariant(tile.isSelected);
         }},
        {"isReachable",
         [](const TvTile& tile) {
             return QVariant(tile.isReachable);
         }},
        {"badges",
         [](const TvTile& tile) {
             return QVariant(badgeValues(tile.badges));
         }},
    };
}

} // namespace

QList<TvTile> tvTiles(const WindowState& state) {
    const QString selectedKey = selectedTvKey(state);
    QList<TvTile> tiles;
    tiles.reserve(state.discoveredDevices.size());
    for (const TVEndpoint& device : state.discoveredDevices) {
        TvTile tile;
        tile.key = endpointKey(device);
        tile.device = device;
        tile.isSelected = state.selectedDevice && tile.key == selectedKey;
        if (tile.isSelected) {
            tile.isReachable = state.isReachable;
            tile.badges = tvBadges(state);
        }
        tiles.append(tile);
    }
    return tiles;
}

QString tileDescription(const TVEndpoint& device) {
    const QString label = deviceDisplayLabel(device).value_or(QString());
    return device.name.contains(label, Qt::CaseInsensitive) ? QString() : label;
}

QString foundTvsText(qsizetype count) {
    return u"Found "_s + QString::number(count) + (count == 1 ? u" TV"_s : u" TVs"_s);
}

SidebarPresenter::SidebarPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions), m_tiles(tileRoles()) {}

void SidebarPresenter::show(const WindowState& state) {
    m_tiles.assign(tvTiles(state));
    publish(this, m_countText, foundTvsText(state.discoveredDevices.size()),
            &SidebarPresenter::countTextChanged);
    publish(this, m_isSearching, state.isSearching, &SidebarPresenter::isSearchingChanged);
}

void SidebarPresenter::refresh() {
    m_actions.refreshDiscovery();
}

void SidebarPresenter::select(const QString& endpointKey) {
    m_actions.selectDevice(endpointKey);
}

} // namespace quiv
