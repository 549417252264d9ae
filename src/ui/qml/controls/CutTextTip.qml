import QtQuick

// Shows a text whole that has no room, while the pointer rests on it.
Item {
    id: cut

    required property Text target

    HoverHandler { id: pointer }
    Loader {
        active: pointer.hovered
        Component.onCompleted: setSource("AppToolTip.qml", {
            target: cut, text: Qt.binding(() => cut.target.text)
        })
    }
}
