import QtQuick
import QtQuick.Templates as T

// A push button with an optional symbol in front of its label.
T.Button {
    id: button

    enum Kind { Bordered, Prominent, Destructive }

    property int kind: AppButton.Bordered
    property string symbol
    property string widestText: text // room is kept for it, so that columns of buttons line up
    property bool opensMenu: false         // says so with an arrow
    property bool isWaiting: false         // for what it has asked for
    property string shortcut // that does the same, for the tool tip
    property bool isCompact: false   // the symbol alone; the label becomes the tool tip
    readonly property bool isLit: enabled && hovered
    readonly property bool prominent: kind === AppButton.Prominent
    readonly property color prominentInk: enabled ? Theme.accentInk : Theme.tertiaryText
    readonly property color ink: prominent ? prominentInk : borderedInk
    readonly property color borderedInk: kind === AppButton.Destructive ? Theme.destructive
                                                                        : Theme.primaryText

    implicitWidth: isCompact ? implicitHeight + 2
                             : implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    horizontalPadding: isCompact ? 0 : 12
    opacity: enabled || prominent ? 1 : 0.45
    font: Theme.button
    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onHoveredChanged: if (opensMenu) Menus.hover(button, hovered)

    contentItem: ButtonLabel {
        symbol: button.symbol
        isWaiting: button.isWaiting
        text: button.isCompact ? "" : button.text
        widestText: button.isCompact ? "" : button.widestText
        hasArrow: button.opensMenu && !button.isCompact
        font: button.font
        ink: button.ink
    }

    background: Panel {
        readonly property color prominent: button.enabled ? Theme.accent : Theme.disabledFill
        readonly property color rest: button.prominent ? prominent : Theme.surface
        readonly property color hovered: button.prominent ? Theme.accentHovered
                                                          : Theme.surfaceHovered
        readonly property color pressed: button.prominent ? Theme.accentPressed
                                                          : Theme.surfacePressed

        radius: Theme.controlRadius
        color: button.down ? pressed : button.isLit ? hovered : rest
        outline: button.prominent ? "transparent" : Theme.controlBorder
    }

    PatientSpinner {
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        isWanted: button.isWaiting && button.symbol === ""
        colour: button.ink
        size: Theme.scaled(13)
    }
    FocusRing { target: button }
    HoverTip {
        target: button
        isWanted: button.isCompact || button.shortcut !== ""
        shortcut: button.shortcut
    }
}
