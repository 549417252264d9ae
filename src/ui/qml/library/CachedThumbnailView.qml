import QtQuick
import Quiv

// The picture of a video, or its place.
Item {
    id: view

    required property ThumbnailStore store
    required property url source

    implicitWidth: 120
    implicitHeight: 68

    Rectangle {
        anchors.fill: parent
        visible: !picture.hasPicture
        radius: Theme.controlRadius
        color: Theme.placeholderFill

        AppIcon {
            anchors.centerIn: parent
            name: "film.fill"
            colour: Theme.secondaryText
            size: 22
        }
    }
    ThumbnailItem {
        id: picture

        anchors.fill: parent
        store: view.store
        url: view.visible ? view.source : "" // what is out of sight fetches nothing
        cornerRadius: Theme.controlRadius
    }
}
