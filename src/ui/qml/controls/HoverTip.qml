import QtQuick
import QtQuick.Templates as T

// The tool tip of a control, made only once the pointer is there.
Loader {
    required property T.AbstractButton target
    property bool isWanted: true

    active: isWanted && target.hovered
    Component.onCompleted: setSource("AppToolTip.qml", { target: target })
}
