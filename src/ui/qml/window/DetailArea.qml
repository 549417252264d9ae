import QtQuick
import QtQuick.Layouts
import Quiv

// The selected TV, or the way to one.
Item {
    id: area

    required property WindowPresenter presenter
    required property Item fullScreenArea
    readonly property bool hasTv: presenter.library.phase !== LibraryPresenter.NoTv

    // Gives the first row that the search left the keyboard.
    function enterResults() {
        library.enterResults()
    }

    NoTvView {
        anchors.fill: parent
        visible: !area.hasTv
        presenter: area.presenter.noTv
    }
    ColumnLayout {
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.topMargin: Theme.padding
        width: Math.min(parent.width, Theme.widestContent + 2 * Theme.padding)
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
            id: library

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.topMargin: -6 // rows bring a margin of their own
            presenter: area.presenter.library
            uploads: area.presenter.uploads
            shortcuts: area.presenter.shortcuts
            thumbnails: area.presenter.thumbnails
        }
        MacTVPlaybackDock {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.padding
            Layout.rightMargin: Theme.padding
            Layout.bottomMargin: Theme.padding
            visible: presenter.state.isShown
            enabled: presenter.isReachable
            presenter: area.presenter.dock
        }
    }

    UploadDropArea {
        anchors.fill: parent
        presenter: area.presenter.uploads
    }
}
