import QtQuick
import QtQuick.Templates as T

// A line of text to type.
T.TextField {
    id: field

    implicitWidth: Theme.scaled(260)
    implicitHeight: Theme.scaled(32)
    leftPadding: Theme.scaled(11)
    rightPadding: Theme.scaled(11)
    verticalAlignment: TextInput.AlignVCenter
    font: Theme.body
    color: Theme.primaryText
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    selectByMouse: true
    Accessible.name: placeholderText

    background: Panel {
        radius: Theme.controlRadius
        outline: Theme.fieldBorder
    }

    PlainText {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: field.text === "" && field.preeditText === ""
        text: field.placeholderText
        color: Theme.tertiaryText
        Accessible.ignored: true
    }

    HoverHandler { cursorShape: Qt.IBeamCursor }

    FocusRing { target: field }
}
