import QtQuick
import Quiv

// The selected TV's storage, where uploads go, and a move that is under way.
BadgeFlow {
    id: row

    required property HeaderPresenter presenter

    spacing: 8
    badges: presenter.state.badges

    HeaderMoveRow {
        width: Math.min(implicitWidth, row.width)
        height: Theme.scaled(26)
        visible: move.isShown
        move: row.presenter.move
    }
}
