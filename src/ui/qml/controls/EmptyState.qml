import QtQuick
import QtQuick.Layouts

// Stands in for the library while it has nothing to show.
ColumnLayout {
    id: state

    property string symbol
    property bool isBusy: false
    required property string title
    property string detail

    spacing: 6

    Spinner {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: 6
        visible: state.isBusy
        size: Theme.scaled(26)
    }
    AppIcon {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: 6
        visible: state.symbol !== ""
        name: state.symbol
        colour: Theme.secondaryText
        size: Theme.scaled(28)
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: state.title
        font: Theme.headline
        wrapMode: Text.Wrap
        maximumLineCount: 3
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        visible: text !== ""
        text: state.detail
        font: Theme.subheadline
        color: Theme.secondaryText
        wrapMode: Text.Wrap
        maximumLineCount: 3
    }
}
