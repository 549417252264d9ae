import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// One entry of a choice menu.
T.AbstractButton {
    id: entry

    required property bool isMarked
    property string symbol // of its own, else the mark
    required property bool isCurrent

    horizontalPadding: 9
    focusPolicy: Qt.NoFocus
    Accessible.name: text
    Accessible.checkable: symbol === ""
    Accessible.checked: isMarked
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
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

    background: Rectangle {
        radius: 6
        color: entry.isCurrent ? Theme.accentFill : "transparent"
    }
}
