pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

// The tool tip of a control, made only once the pointer is there.
Loader {
    id: loader

    required property T.AbstractButton target
    required property string text

    anchors.fill: parent
    active: target.hovered && text !== ""

    sourceComponent: AppToolTip {
        parent: loader
        text: loader.text
        visible: loader.target.hovered && !loader.target.down
    }
}
