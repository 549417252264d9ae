import QtQuick
import QtQuick.Layouts
import Quiv

// The selected TV, or the way to one.
Item {
    id: area

    required property WindowPresenter presenter
    required property Item fullScreenArea
    readonly property bool hasTv: presenter.library.phase !== LibraryPresenter.NoTv

    NoTvView {
        anchors.fill: parent
        visible: !area.hasTv
        presenter: area.presenter.noTv
    }
    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: Theme.padding
        visible: area.hasTv
        spacing: Theme.gap

        Header {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.padding
            Layout.rightMargin: Theme.padding
            presenter: area.presenter
        }
        Divider {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.padding
            Layout.rightMargin: Theme.padding
        }
        LocalPlaybackPlace {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.padding
            Layout.rightMargin: Theme.padding
            presenter: area.presenter.localPanel
            fullScreenArea: area.fullScreenArea
        }
        LibraryArea {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.topMargin: -6 // rows bring a margin of their own
            presenter: area.presenter.library
            uploads: area.presenter.uploads
            thumbnails: area.presenter.thumbnails
            isCompact: area.Window.width < Theme.compactBelow
        }
        MacTVPlaybackDock {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.padding
            Layout.rightMargin: Theme.padding
            Layout.bottomMargin: Theme.padding
            visible: presenter.state.isShown
            presenter: area.presenter.dock
        }
    }

    UploadDropArea {
        anchors.fill: parent
        presenter: area.presenter.uploads
    }
}
