import QtQuick
import QtQuick.Layouts
import Quiv

// The window's heading and the search in the selected TV's files.
Item {
    id: toolbar

    required property LibraryPresenter library

    signal searchLeft() // for what was found

    function enterSearch() {
        field.forceActiveFocus(Qt.ShortcutFocusReason)
        field.selectAll()
    }

    implicitHeight: Theme.scaled(52)

    RowLayout {
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width - 2 * Theme.padding, Theme.widestContent)
        spacing: Theme.gap

        PlainText {
            text: "Quiv Controller"
            font: Theme.title
            Accessible.role: Accessible.Heading
        }
        SearchField {
            id: field

            Layout.fillWidth: true
            Layout.minimumWidth: 160
            Layout.maximumWidth: implicitWidth
            Layout.alignment: Qt.AlignRight
            placeholderText: "Search files on this TV"
            Accessible.description: "Ctrl+F"
            text: toolbar.library.searchText
            onTextEdited: toolbar.library.search(text)
            onCleared: toolbar.library.search("")
            Keys.onDownPressed: toolbar.searchLeft()
            Keys.onEscapePressed: {
                toolbar.library.search("")
                toolbar.searchLeft()
            }
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
