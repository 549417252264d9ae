pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quiv

// The files on their way.
Rectangle {
    id: queue

    required property UploadsPresenter presenter
    readonly property int contentHeight: list.contentHeight

    radius: Theme.cardRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.separator

    ListView {
        id: list

        anchors.fill: parent
        anchors.margins: 1
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        model: queue.presenter.rows
        Accessible.role: Accessible.List
        Accessible.name: "Uploads"
        T.ScrollBar.vertical: AppScrollBar {}

        delegate: UploadQueueRow {
            id: row

            required property int index

            width: list.width
            presenter: queue.presenter
            ListView.onPooled: visible = false
            ListView.onReused: visible = true

            Divider {
                width: parent.width
                visible: row.index > 0
            }
        }
    }
}
