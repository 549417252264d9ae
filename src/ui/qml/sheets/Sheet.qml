import QtQuick
import QtQuick.Templates as T

// What asks the user something before all else: a panel over the dimmed window.
T.Popup {
    id: sheet

    property int preferredWidth: 380

    anchors.centerIn: T.Overlay.overlay
    width: Math.min(implicitContentWidth, Theme.scaled(preferredWidth)) + 2 * padding
    height: implicitContentHeight + 2 * padding
    padding: 28
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose

    T.Overlay.modal: Rectangle { color: Theme.scrim }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.gentle }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick }
    }

    background: Item {
        Shadow {
            cornerRadius: Theme.overlayRadius
            reach: 32
        }
        Panel {
            anchors.fill: parent
            radius: Theme.overlayRadius
            outline: Theme.separator
        }
    }
}
