#pragma once

#include "model/window_state.h"
#include "ui/presenters/record_list_model.h"
#include "ui/storage_badges.h"

#include <QAbstractItemModel>
#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace quiv {

class WindowActions;

// One TV of the sidebar.
struct TvTile {
    QString key; // endpointKey
    TVEndpoint device;
    bool isSelected = false;
    bool isReachable = true;
    QList<StorageStatusBadge> badges; // of the selected TV only

    bool operator==(const TvTile&) const = default;
};

QList<TvTile> tvTiles(const WindowState& state);

// Returns maker and model, or an empty text if the name tells them already.
QString tileDescription(const TVEndpoint& device);

// "Found 1 TV", "Found 3 TVs".
QString foundTvsText(qsizetype count);

// The list of discovered TVs, in the model's order.
class SidebarPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(QAbstractItemModel* tiles READ tiles CONSTANT)
    Q_PROPERTY(QString countText READ countText NOTIFY countTextChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)

public:
    explicit SidebarPresenter(WindowActions& actions, QObject* parent = nullptr);

    QAbstractItemModel* tiles() { return &m_tiles; }
    const QString& countText() const { return m_countText; }
    bool isSearching() const { return m_isSearching; }

    void show(const WindowState& state);

    Q_INVOKABLE void refresh();
    Q_INVOKABLE void select(const QString& endpointKey);

Q_SIGNALS:
    void countTextChanged();
    void isSearchingChanged();

private:
    WindowActions& m_actions;
    RecordListModel<TvTile, &TvTile::key> m_tiles;
    bool m_isSearching = false;
    QString m_countText = foundTvsText(0);
};

} // namespace quiv
