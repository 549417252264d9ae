import QtQuick
import QtQuick.Layouts
import Quiv

// One row of the library: a video with what belongs to it, or a file without a video.
Item {
    id: row

    required property string title
    required property string subtitleText
    required property storageStatusBadge storageBadge
    property bool isCurrent: false

    implicitHeight: Math.max(68, titles.implicitHeight) + 18
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: subtitleText

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: 10
        color: hover.hovered ? Theme.rowHovered : "transparent"
        border.width: row.isCurrent && Appearance.isKeyboardInUse ? 2 : 0
        border.color: Theme.accent

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        spacing: 12

        Thumbnail {}
        ColumnLayout {
            id: titles

            Layout.fillWidth: true
            spacing: 3

            PlainText {
                Layout.fillWidth: true
                text: row.title
                font: Theme.headline
            }
            PlainText {
                Layout.fillWidth: true
                text: row.subtitleText
                font: Theme.caption
                color: Theme.secondaryText
            }
        }
        Badge {
            text: row.storageBadge.text
            tone: row.storageBadge.tone
        }
    }

    HoverHandler { id: hover }
}
