import QtQuick
import QtQuick.Templates as T

// The list of a choice menu. Long ones scroll within the window.
T.Popup {
    id: popup

    required property string label
    required property var choices
    property var symbols: []
    property var enabledStates: []
    required property int currentIndex
    property real narrowest: Theme.scaled(190)
    readonly property int rowHeight: Theme.scaled(28)
    readonly property real widest: Theme.scaled(460)
    readonly property var offered: isOffered ? choices : [] // nothing is made of it while closed
    readonly property real widestText: offered.reduce((width, each) => Math.max(
        width, each.length > 80 ? widest : metrics.advanceWidth(each)), 0)
    property bool isOffered: false

    signal chosen(index: int)

    function choose(index: int) {
        close()
        chosen(index)
    }

    // As wide as its texts need, within reason; beyond that they are shortened.
    width: Math.max(narrowest, Math.min(widestText + Theme.scaled(64), widest))
    height: Math.min(offered.length * rowHeight + 2 * padding, Theme.scaled(340))
    padding: 5
    margins: 8
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    onAboutToShow: isOffered = true
    onClosed: isOffered = false

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
    }

    background: Item {
        Shadow {
            cornerRadius: 10
            reach: 18
        }
        Panel {
            anchors.fill: parent
            radius: 10
            outline: Theme.controlBorder
        }
    }

    // A press outside closes the menu and does nothing more, but on the button of another menu.
    MouseArea {
        parent: T.Overlay.overlay
        anchors.fill: parent
        visible: popup.visible
        z: -1
        onPressed: press => {
            press.accepted = !Menus.isOther(popup.parent)
            popup.close()
        }
    }
    FontMetrics {
        id: metrics

        font: Theme.body
    }

    contentItem: ChoiceList {
        label: popup.label
        choices: popup.offered
        symbols: popup.symbols
        enabledStates: popup.enabledStates
        markedIndex: popup.currentIndex
        rowHeight: popup.rowHeight
        onChosen: index => popup.choose(index)
        onDismissed: popup.close()
    }
}
