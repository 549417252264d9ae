import QtQuick
import QtQuick.Templates as T

// What asks the user something before all else: a panel over the dimmed window, never larger than
// that; what has no room scrolls inside.
T.Popup {
    id: sheet

    required property Item form
    property int preferredWidth: 380
    property string name // of the dialog, for assistive technology
    readonly property real mostWidth: (T.Overlay.overlay?.width ?? 0) - 2 * Theme.padding
    readonly property real mostHeight: (T.Overlay.overlay?.height ?? 0) - 2 * Theme.padding

    anchors.centerIn: T.Overlay.overlay
    width: Math.min(Math.min(form.implicitWidth, Theme.scaled(preferredWidth)) + 2 * padding,
                    mostWidth)
    height: Math.min(form.implicitHeight + 2 * padding, mostHeight)
    padding: 28
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    onNameChanged: contentItem.parent.Accessible.name = name
    onAboutToShow: contentItem.parent.Accessible.name = name

    T.Overlay.modal: Rectangle {
        color: Theme.scrim

        Behavior on opacity {
            NumberAnimation { duration: Theme.gentle }
        }
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.gentle }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.gentle }
    }

    contentItem: Flickable {
        contentHeight: sheet.form.implicitHeight
        interactive: contentHeight > height + 1
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds
        flickableData: [sheet.form]
        T.ScrollBar.vertical: AppScrollBar {}
    }
    Binding {
        target: sheet.form
        property: "width"
        value: sheet.availableWidth
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
