import QtQuick
import Quiv

// The library, or why there is nothing to see.
Item {
    id: area

    required property LibraryPresenter presenter
    required property UploadsPresenter uploads
    required property ThumbnailStore thumbnails
    property bool isCompact: false
    readonly property int stateWidth: Math.min(width - 2 * Theme.padding, Theme.scaled(460))

    UploadQueue {
        id: queue

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.padding
        anchors.rightMargin: Theme.padding
        anchors.top: parent.top
        anchors.topMargin: 6
        height: Math.min(contentHeight + 2, Math.round(area.height * 0.45))
        visible: area.uploads.count > 0
        presenter: area.uploads
    }
    LibraryList {
        anchors.fill: parent
        anchors.topMargin: queue.visible ? queue.height + 14 : 0
        anchors.leftMargin: 10
        anchors.rightMargin: 2
        visible: area.presenter.phase === LibraryPresenter.List
        presenter: area.presenter
        thumbnails: area.thumbnails
        isCompact: area.isCompact
    }
    EmptyState {
        anchors.centerIn: parent
        width: area.stateWidth
        visible: area.presenter.phase === LibraryPresenter.Loading
        isBusy: true
        title: area.presenter.loadingText
    }
    EmptyState {
        anchors.centerIn: parent
        width: area.stateWidth
        visible: area.presenter.phase === LibraryPresenter.Failed
        symbol: "exclamationmark.triangle"
        title: "The library could not be loaded"
        detail: area.presenter.failureText
    }
    EmptyState {
        anchors.centerIn: parent
        width: area.stateWidth
        visible: area.presenter.phase === LibraryPresenter.NoResults
        symbol: "magnifyingglass"
        title: "No Results"
        detail: area.presenter.noResultsText
    }
    EmptyState {
        anchors.centerIn: parent
        width: area.stateWidth
        visible: area.presenter.phase === LibraryPresenter.Empty
        symbol: "film"
        title: "No media files yet"
        detail: "Upload a video or subtitle file to this TV to get started."
    }
}
