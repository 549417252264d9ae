import QtQuick
import Quiv

// Takes files that are dragged here from elsewhere.
DropArea {
    id: area

    required property UploadsPresenter presenter

    keys: ["text/uri-list"]
    onEntered: drag => drag.accepted = presenter.dragEntered(drag.urls)
    onExited: presenter.dragLeft()
    onDropped: event => event.accepted = presenter.drop(event.urls)

    DropOverlay {
        anchors.fill: parent
        visible: area.presenter.isUploadDropTargeted
        hint: area.presenter.dropHint
    }
}
