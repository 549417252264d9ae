import QtQuick

// A text that opens a web page.
PlainText {
    id: link

    required property string address

    function open() {
        Qt.openUrlExternally(address)
    }

    color: tap.pressed ? Theme.accentPressed : Theme.accent
    wrapMode: Text.Wrap
    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.onPressAction: open()
    Keys.onSpacePressed: open()
    Keys.onReturnPressed: open()
    Keys.onEnterPressed: open()

    TapHandler {
        id: tap

        onTapped: link.open()
    }
    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
    }
    Rectangle { // as an underline that leaves the font alone
        anchors.bottom: link.bottom
        width: link.contentWidth
        height: 1
        color: link.color
        visible: hover.hovered && link.lineCount === 1
    }
    FocusRing {
        target: link
        cornerRadius: 2
    }
}
