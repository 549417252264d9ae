import QtQuick

// Every text of the window: words from outside must not become markup.
Text {
    textFormat: Text.PlainText
    font: Theme.body
    color: Theme.primaryText
    elide: Text.ElideRight
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
