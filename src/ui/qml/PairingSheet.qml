import QtQuick
import QtQuick.Templates as T
import Quiv

// Asks for the code that the TV shows.
T.Popup {
    id: sheet

    required property PairingSheetPresenter presenter

    anchors.centerIn: T.Overlay.overlay
    width: Math.min(implicitContentWidth, Theme.scaled(380)) + 2 * padding
    height: implicitContentHeight + 2 * padding
    padding: 28
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    visible: presenter.state.isShown

    T.Overlay.modal: Rectangle { color: Theme.scrim }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.gentle }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick }
    }

    background: Item {
        Shadow {
            anchors.fill: parent
            cornerRadius: Theme.overlayRadius
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.overlayRadius
            color: Theme.surface
            border.width: 1
            border.color: Theme.separator
        }
    }

    contentItem: PairingForm { presenter: sheet.presenter }
}
