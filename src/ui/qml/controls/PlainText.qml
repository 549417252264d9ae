import QtQuick

// Every text of the window: words from outside must not become markup.
Text {
    textFormat: Text.PlainText
    font: Theme.body
    color: Theme.primaryText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft // also where a name reads from right to left
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
