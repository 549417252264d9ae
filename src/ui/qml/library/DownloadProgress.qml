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

    contentItem: DownloadProgressLabel {
        fraction: button.fraction
        percentText: button.percentText
        offersCancel: button.offersCancel
        cancelText: button.text
        font: button.font
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
