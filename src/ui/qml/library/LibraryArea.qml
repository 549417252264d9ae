import QtQuick
import Quiv

// The library below the queue, or why there is nothing to see.
Item {
    id: area

    required property LibraryPresenter presenter
    required property UploadsPresenter uploads
    required property ShortcutsPresenter shortcuts
    required property ThumbnailStore thumbnails
    readonly property int stateWidth: Math.min(width - 2 * Theme.padding, Theme.scaled(460))

    // Gives the first row that the search left the keyboard.
    function enterResults() {
        list.enterResults()
    }

    Item {
        id: found

        height: visible ? words.implicitHeight + 8 : 0
        visible: words.text !== "" && list.visible

        PlainText {
            id: words

            x: Theme.padding
            text: area.presenter.foundText
            font: Theme.caption
            color: Theme.secondaryText
        }
    }
    LibraryList {
        id: list

        anchors.fill: parent
        anchors.topMargin: found.height
        visible: area.presenter.phase === LibraryPresenter.List
        presenter: area.presenter
        uploads: area.uploads
        shortcuts: area.shortcuts
        thumbnails: area.thumbnails
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
