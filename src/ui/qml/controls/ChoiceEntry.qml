import QtQuick
import QtQuick.Layouts

// One entry of a choice menu. No button of the templates: those name themselves buttons to assistive
// technology, whatever they are.
Item {
    id: entry

    required property string text
    required property bool isMarked
    property string symbol // of its own, else the mark
    required property bool isCurrent

    signal clicked()
    signal pointed(place: point) // in the scene

    opacity: enabled ? 1 : 0.45
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    // The toolkit tells of no item that it is disabled.
    Accessible.description: enabled ? "" : "Not available"
    Accessible.checkable: symbol === ""
    Accessible.checked: isMarked
    Accessible.focusable: true
    Accessible.onPressAction: if (enabled) clicked()

    Rectangle {
        anchors.fill: parent
        radius: 6
        color: entry.isCurrent ? Theme.accentFill : "transparent"
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 9
        anchors.rightMargin: 9
        spacing: 8

        AppIcon {
            opacity: entry.isMarked || entry.symbol !== "" ? 1 : 0
            name: entry.symbol === "" ? "checkmark" : entry.symbol
            colour: entry.symbol === "" ? Theme.accent : Theme.secondaryText
            size: Theme.scaled(entry.symbol === "" ? 13 : 16)
        }
        PlainText {
            Layout.fillWidth: true
            text: entry.text
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        onClicked: entry.clicked()
        onPositionChanged: event => entry.pointed(mapToItem(null, event.x, event.y))
    }
}
