import QtQuick
import QtQuick.Templates as T

// Where the user types the code that the TV shows.
T.TextField {
    id: field

    implicitWidth: Theme.scaled(200)
    implicitHeight: Theme.scaled(52)
    horizontalAlignment: TextInput.AlignHCenter
    verticalAlignment: TextInput.AlignVCenter
    leftPadding: 12
    rightPadding: 12
    font: Theme.code
    color: Theme.primaryText
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    selectByMouse: true
    inputMethodHints: Qt.ImhDigitsOnly | Qt.ImhNoPredictiveText
    Accessible.name: placeholderText

    background: Panel {
        radius: Theme.controlRadius
        color: Theme.window
        outline: field.activeFocus ? Theme.accent : Theme.fieldBorder
    }

    PlainText {
        anchors.centerIn: parent
        visible: field.text === "" && field.preeditText === ""
        text: field.placeholderText
        font: Theme.codePlaceholder
        color: Theme.tertiaryText
        Accessible.ignored: true
    }

    HoverHandler { cursorShape: Qt.IBeamCursor }

    FocusRing { target: field }
}
