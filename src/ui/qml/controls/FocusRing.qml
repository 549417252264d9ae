import QtQuick
import Quiv

// Marks the item with the keyboard focus while the user is at the keyboard.
Rectangle {
    required property Item target
    property int cornerRadius: Theme.controlRadius

    anchors.fill: target
    anchors.margins: -4
    radius: cornerRadius + 4
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    visible: target.activeFocus && Appearance.isKeyboardInUse
}
