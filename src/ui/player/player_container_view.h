#pragma once

#include "ui/presenters/local_panel_presenter.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace quiv {

// Holds the picture of a player, which brings its own item.
class AVPlayerContainerView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(quiv::LocalPlayerHandle player READ player WRITE setPlayer NOTIFY playerChanged)

public:
    using QQuickItem::QQuickItem;

    const LocalPlayerHandle& player() const { return m_player; }
    // The same player again keeps its picture.
    void setPlayer(const quiv::LocalPlayerHandle& player);

Q_SIGNALS:
    void playerChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    LocalPlayerHandle m_player;
    std::unique_ptr<QQuickItem> m_video; // nullptr without a player
};

} // namespace quiv
