import QtQuick

// What a download's progress shows: how far it has come, or how to end it.
Item {
    id: content

    required property real fraction
    required property string percentText
    required property bool offersCancel
    required property string cancelText
    required property font font
    required property bool isTight // the number alone, and a sign to end it

    implicitWidth: cancelLabel.implicitWidth

    ProgressLine {
        id: line

        anchors.verticalCenter: parent.verticalCenter
        visible: !content.offersCancel && !content.isTight
        width: content.isTight ? 0 : 52
        fraction: content.fraction
        label: "Download"
    }
    PlainText {
        anchors.left: line.right
        anchors.leftMargin: content.isTight ? 0 : 9
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
        symbol: content.isTight ? "xmark" : ""
        text: content.isTight ? "" : content.cancelText
        widestText: text
        font: content.font
        ink: Theme.destructive
    }
}
