import QtQuick
import QtQuick.Templates as T

// The tool tip of a control, made only once the pointer is there.
Loader {
    required property T.AbstractButton target
    property bool isWanted: true
    property string shortcut // that does the same

    active: isWanted && target.hovered
    Component.onCompleted: setSource("AppToolTip.qml", { target: target, shortcut: Qt.binding(() => shortcut) })
}
