import QtQuick

// A text that does something when it is pressed.
PlainText {
    id: button

    signal clicked()

    color: tap.pressed ? Theme.accentPressed : Theme.accent
    wrapMode: Text.Wrap
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.onPressAction: clicked()
    Keys.onSpacePressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    TapHandler {
        id: tap

        onTapped: button.clicked()
    }
    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
    }
    Rectangle { // as an underline that leaves the font alone
        anchors.bottom: button.bottom
        width: button.contentWidth
        height: 1
        color: button.color
        visible: hover.hovered && button.lineCount === 1
    }
    FocusRing {
        target: button
        cornerRadius: 2
    }
}
