import QtQuick
import QtQuick.Templates as T

// How far a download has come; under the pointer or with the keyboard on it, the button to end it.
T.Button {
    id: button

    required property real fraction
    required property string percentText
    readonly property bool offersCancel: hover.hovered || visualFocus

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    horizontalPadding: 9
    text: "Cancel download"
    font: Theme.button
    Accessible.name: text
    Accessible.description: percentText
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        implicitWidth: label.implicitWidth

        ProgressLine {
            id: line

            anchors.verticalCenter: parent.verticalCenter
            visible: !button.offersCancel
            width: 52
            fraction: button.fraction
            label: "Download"
        }
        PlainText {
            anchors.left: line.right
            anchors.leftMargin: 9
            anchors.verticalCenter: parent.verticalCenter
            visible: !button.offersCancel
            text: button.percentText
            font: Theme.caption
            Accessible.ignored: true
        }
        ButtonLabel {
            id: label

            anchors.fill: parent
            visible: button.offersCancel
            symbol: ""
            text: button.text
            widestText: text
            font: button.font
            ink: Theme.destructive
        }
    }

    background: Rectangle {
        readonly property color offered: button.down ? Theme.surfacePressed : Theme.surfaceHovered

        radius: Theme.controlRadius
        color: button.offersCancel ? offered : Theme.progressFill
        border.width: button.offersCancel ? 1 : 0
        border.color: Theme.controlBorder
    }

    HoverHandler { id: hover }

    FocusRing { target: button }
}
