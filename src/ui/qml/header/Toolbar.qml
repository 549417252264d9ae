import QtQuick
import QtQuick.Layouts
import Quiv

// The window's heading and the search in the selected TV's files.
Item {
    id: toolbar

    required property LibraryPresenter library

    implicitHeight: Theme.scaled(52)

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.padding
        anchors.rightMargin: Theme.padding
        spacing: Theme.gap

        PlainText {
            text: "Quiv Controller"
            font: Theme.title
            Accessible.role: Accessible.Heading
        }
        SearchField {
            Layout.fillWidth: true
            Layout.minimumWidth: 160
            Layout.maximumWidth: implicitWidth
            Layout.alignment: Qt.AlignRight
            placeholderText: "Search files on this TV"
            text: toolbar.library.searchText
            onTextEdited: toolbar.library.search(text)
            onCleared: toolbar.library.search("")
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
