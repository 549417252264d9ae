import QtQuick

// One of the project's symbols in one colour.
Image {
    required property string name
    required property color colour
    property int size: Theme.scaled(16)

    source: name === "" ? "" : "image://icon/" + name + "/" + colour.toString().substring(1)
    sourceSize {
        width: size
        height: size
    }
    Accessible.ignored: true
}
