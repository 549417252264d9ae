import QtQuick
import QtQuick.Templates as T

// Where the user types what to look for.
TextEntry {
    id: field

    signal cleared()

    leftPadding: Theme.scaled(33)
    rightPadding: Theme.scaled(30)

    AppIcon {
        x: Theme.scaled(11)
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        colour: Theme.tertiaryText
        size: Theme.scaled(15)
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
}
