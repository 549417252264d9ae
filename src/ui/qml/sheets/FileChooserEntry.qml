import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A folder or file to choose.
T.AbstractButton {
    id: entry

    required property string key
    required property string name
    required property bool isFolder
    required property bool isChosen
    property bool isCurrent: false

    implicitHeight: Theme.scaled(30)
    horizontalPadding: 9
    focusPolicy: Qt.NoFocus
    Accessible.name: name
    Accessible.checkable: !isFolder
    Accessible.checked: isChosen
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
        spacing: 9

        AppIcon {
            name: entry.isFolder ? "folder" : entry.isChosen ? "checkmark" : "doc"
            colour: entry.isChosen ? Theme.accent : Theme.secondaryText
            size: Theme.scaled(15)
        }
        PlainText {
            Layout.fillWidth: true
            text: entry.name
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: 6
        color: entry.isChosen ? Theme.accentFill : entry.hovered ? Theme.rowHovered : "transparent"
        border.width: entry.isCurrent ? Theme.hairline : 0
        border.color: Theme.accent
    }
}
