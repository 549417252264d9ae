import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// One discovered TV.
T.AbstractButton {
    id: tile

    required property string name
    required property string address
    required property string description // may be empty
    required property bool isSelected
    required property bool isReachable
    required property var badges

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 10
    text: name
    focusPolicy: Qt.ClickFocus
    Accessible.description: address
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: RowLayout {
        spacing: 10

        AppIcon {
            Layout.alignment: Qt.AlignTop
            name: tile.isSelected ? "tv.fill" : "tv"
            colour: tile.isSelected && tile.isReachable ? Theme.selectedTv : Theme.secondaryText
            size: Theme.scaled(22)
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1

            PlainText {
                Layout.fillWidth: true
                text: tile.name
                font: Theme.headline
            }
            PlainText {
                Layout.fillWidth: true
                text: tile.address
                font: Theme.caption
                color: Theme.secondaryText
            }
            PlainText {
                Layout.fillWidth: true
                visible: tile.description !== ""
                text: tile.description
                font: Theme.caption2
                color: Theme.tertiaryText
            }
            BadgeFlow {
                Layout.fillWidth: true
                Layout.topMargin: 5
                visible: tile.badges.length > 0
                spacing: 5
                badges: tile.badges
            }
        }
    }

    background: Panel {
        color: tile.down ? Theme.surfacePressed
                         : tile.hovered ? Theme.surfaceHovered : Theme.surface
        outline: Theme.tileOutline

        Panel { // the selected one beyond doubt
            anchors.fill: parent
            visible: tile.isSelected
            color: Theme.accentFill
            outline: Theme.accent
            outlineWidth: 2
        }
    }

    FocusRing {
        target: tile
        anchors.margins: -3
        cornerRadius: Theme.cardRadius
    }
}
