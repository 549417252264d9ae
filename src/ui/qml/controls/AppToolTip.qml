import QtQuick
import QtQuick.Templates as T

// Names the control under the pointer.
T.ToolTip {
    id: tip

    required property T.AbstractButton target

    parent: target
    property string shortcut
    readonly property string keys: shortcut === "" ? "" : " (" + shortcut + ")"

    text: target.text + keys
    visible: target.hovered && !target.down
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    x: Math.round((target.width - width) / 2)
    y: -height - 6
    margins: 6
    horizontalPadding: 9
    verticalPadding: 5
    delay: 500
    closePolicy: T.Popup.NoAutoClose

    contentItem: PlainText {
        text: tip.text
        font: Theme.caption
    }
    background: Rectangle {
        radius: 6
        color: Theme.surface
        border.width: 1
        border.color: Theme.controlBorder
    }
}
