import QtQuick

// Every text of the window: words from outside must not become markup. What has no room is shown
// whole under the pointer.
Text {
    id: label

    property bool showsCutText: true

    textFormat: Text.PlainText
    font: Theme.body
    color: Theme.primaryText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft // also where a name reads from right to left
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Loader {
        anchors.fill: parent
        active: label.truncated && label.showsCutText
        Component.onCompleted: setSource("CutTextTip.qml", { target: label })
    }
}
