import QtQuick

// What a download's progress shows: how far it has come, or how to end it.
Item {
    id: content

    required property real fraction
    required property string percentText
    required property bool offersCancel
    required property string cancelText
    required property font font

    implicitWidth: cancelLabel.implicitWidth

    ProgressLine {
        id: line

        anchors.verticalCenter: parent.verticalCenter
        visible: !content.offersCancel
        width: 52
        fraction: content.fraction
        label: "Download"
    }
    PlainText {
        anchors.left: line.right
        anchors.leftMargin: 9
        anchors.verticalCenter: parent.verticalCenter
        visible: !content.offersCancel
        text: content.percentText
        font: Theme.caption
        Accessible.ignored: true
    }
    ButtonLabel {
        id: cancelLabel

        anchors.fill: parent
        visible: content.offersCancel
        symbol: ""
        text: content.cancelText
        widestText: text
        font: content.font
        ink: Theme.destructive
    }
}
