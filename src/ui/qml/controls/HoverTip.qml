import QtQuick
import QtQuick.Templates as T

// The tool tip of a control, made only once the pointer is there.
Loader {
    id: tip

    required property T.AbstractButton target
    property string text: target.text
    property bool isWanted: true
    property string shortcut // that does the same
    readonly property string keys: shortcut === "" ? "" : " (" + shortcut + ")"

    active: isWanted && target.hovered && !target.down && text !== ""
    Component.onCompleted: setSource("AppToolTip.qml",
                                     { target: target, text: Qt.binding(() => tip.text + tip.keys) })
}
