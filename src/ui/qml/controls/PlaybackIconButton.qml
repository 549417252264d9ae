import QtQuick
import QtQuick.Templates as T

// A small button that is nothing but its symbol.
T.Button {
    id: button

    required property string systemName
    required property string accessibilityLabel
    property string shortcut // that does the same, for the tool tip
    property color tint: Theme.primaryText
    property bool isWaiting: false // for what it has asked for
    readonly property bool isLit: enabled && hovered
    property bool isRound: false // filled with a shade of the tint instead of bordered

    implicitWidth: Theme.scaled(30)
    implicitHeight: Theme.scaled(30)
    opacity: enabled ? 1 : 0.45
    text: accessibilityLabel
    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        WaitingIcon {
            anchors.centerIn: parent
            symbol: button.systemName
            isWaiting: button.isWaiting
            colour: button.tint
            size: Theme.scaled(14)
        }
    }

    background: Panel {
        readonly property color bordered: button.down ? Theme.surfacePressed
                                        : button.isLit ? Theme.surfaceHovered : Theme.surface
        readonly property color filled: button.down || button.isLit ? Theme.accentFillHovered
                                                                      : Theme.accentFill

        radius: button.isRound ? height / 2 : Theme.controlRadius
        color: button.isRound ? filled : bordered
        outline: button.isRound ? "transparent" : Theme.controlBorder
    }

    FocusRing {
        target: button
        cornerRadius: button.isRound ? button.height / 2 : Theme.controlRadius
    }
    HoverTip {
        target: button
        shortcut: button.shortcut
    }
}
