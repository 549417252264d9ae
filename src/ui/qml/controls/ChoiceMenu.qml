import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A button that shows what is chosen of a few and opens the others. What it shows changes when the
// TV says so, not with the click.
T.Button {
    id: menu

    required property string label
    required property var choices // texts
    required property int currentIndex
    property bool opensDown: false // instead of up
    property bool isWaiting: false // for what was chosen
    readonly property bool isLit: enabled && hovered
    readonly property string currentText: choices[currentIndex] ?? ""

    signal chosen(index: int)

    implicitWidth: Theme.scaled(190)
    implicitHeight: Theme.controlHeight
    horizontalPadding: 12
    opacity: enabled ? 1 : 0.45
    text: label
    Accessible.name: label
    Accessible.description: currentText
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onDownPressed: popup.open()
    Keys.onUpPressed: popup.open()
    onHoveredChanged: Menus.hover(menu, hovered)
    onClicked: popup.visible ? popup.close() : popup.open()

    contentItem: RowLayout {
        spacing: 7

        PlainText {
            text: menu.label
            color: Theme.secondaryText
            Accessible.ignored: true
        }
        PlainText {
            Layout.fillWidth: true
            text: menu.currentText
            Accessible.ignored: true
        }
        WaitingIcon {
            symbol: "chevron.down"
            isWaiting: menu.isWaiting
            colour: Theme.secondaryText
            size: Theme.scaled(11)
        }
    }

    background: Panel {
        radius: Theme.controlRadius
        color: menu.down || popup.visible ? Theme.surfacePressed
                                          : menu.isLit ? Theme.surfaceHovered : Theme.surface
        outline: Theme.controlBorder
    }

    FocusRing { target: menu }
    ChoicePopup {
        id: popup

        y: menu.opensDown ? menu.height + 4 : -height - 4
        narrowest: menu.width
        label: menu.label
        choices: menu.choices
        currentIndex: menu.currentIndex
        onChosen: index => menu.chosen(index)
        onClosed: menu.forceActiveFocus()
    }
}
