import QtQuick
import QtQuick.Templates as T

// A text that opens a web page.
T.AbstractButton {
    id: link

    required property string address

    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight
    onClicked: Qt.openUrlExternally(link.address)
    Accessible.role: Accessible.Link
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: PlainText {
        text: link.text
        font.family: link.font.family
        font.pointSize: link.font.pointSize
        font.weight: link.font.weight
        font.underline: link.hovered
        color: link.down ? Theme.accentPressed : Theme.accent
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    HoverHandler { cursorShape: Qt.PointingHandCursor }

    FocusRing {
        target: link
        cornerRadius: 2
    }
}
