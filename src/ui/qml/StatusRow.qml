import QtQuick
import Quiv

// The selected TV's storage and where uploads go.
BadgeFlow {
    required property HeaderPresenter presenter

    spacing: 8
    badges: presenter.state.badges
}
