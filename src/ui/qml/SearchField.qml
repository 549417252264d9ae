import QtQuick
import QtQuick.Templates as T

// Where the user types what to look for.
T.TextField {
    id: field

    signal cleared()

    implicitWidth: Theme.scaled(260)
    implicitHeight: Theme.scaled(32)
    leftPadding: Theme.scaled(33)
    rightPadding: Theme.scaled(30)
    verticalAlignment: TextInput.AlignVCenter
    font: Theme.body
    color: Theme.primaryText
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    selectByMouse: true
    Accessible.name: placeholderText

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.controlBorder
    }

    AppIcon {
        x: Theme.scaled(11)
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        colour: Theme.tertiaryText
        size: Theme.scaled(15)
    }

    PlainText {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: field.text === "" && field.preeditText === ""
        text: field.placeholderText
        color: Theme.tertiaryText
        Accessible.ignored: true
    }

    T.AbstractButton {
        id: clear

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.scaled(30)
        height: parent.height
        visible: field.text !== ""
        onClicked: field.cleared()
        Accessible.name: "Clear search"
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()

        contentItem: Item {
            AppIcon {
                anchors.centerIn: parent
                name: "xmark.circle.fill"
                colour: clear.hovered ? Theme.secondaryText : Theme.tertiaryText
                size: Theme.scaled(15)
            }
        }

        HoverHandler { cursorShape: Qt.ArrowCursor }

        FocusRing {
            target: clear
            anchors.margins: 2
            cornerRadius: 2
        }
    }

    HoverHandler { cursorShape: Qt.IBeamCursor }

    FocusRing { target: field }
}
