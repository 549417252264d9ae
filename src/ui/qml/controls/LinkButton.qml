import QtQuick

// A text that opens a web page.
TextButton {
    required property string address

    Accessible.role: Accessible.Link
    onClicked: Qt.openUrlExternally(address)
}
