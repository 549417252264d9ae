import QtQuick

// A text of several lines at most that the user can select and copy.
TextEdit {
    textFormat: TextEdit.PlainText
    font: Theme.body
    color: Theme.primaryText
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    wrapMode: TextEdit.Wrap
    readOnly: true
    selectByMouse: true
    activeFocusOnPress: true
    activeFocusOnTab: false
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    onActiveFocusChanged: if (!activeFocus) deselect()
    Keys.onEscapePressed: focus = false

    HoverHandler { cursorShape: Qt.IBeamCursor }
}
