import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// One entry of a choice menu.
T.AbstractButton {
    id: entry

    required property bool isMarked
    required property bool isCurrent

    horizontalPadding: 9
    focusPolicy: Qt.NoFocus
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: isMarked
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
        spacing: 8

        AppIcon {
            opacity: entry.isMarked ? 1 : 0
            name: "checkmark"
            colour: Theme.accent
            size: Theme.scaled(13)
        }
        PlainText {
            Layout.fillWidth: true
            text: entry.text
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: 6
        color: entry.isCurrent ? Theme.accentFill : "transparent"
    }
}
