import QtQuick
import Quiv

// What can be done with a row's files; buttons stand in columns from row to row.
Row {
    id: actions

    required property LibraryPresenter presenter
    required property string key // of the row
    required property fileGroupRowState content
    required property DownloadMenu downloadMenu
    required property bool isCompact
    required property int focusPolicy

    spacing: 6

    AppButton {
        symbol: "arrow.left.arrow.right"
        text: actions.content.moveTitle
        widestText: "Move to Internal"
        isCompact: actions.isCompact
        enabled: actions.content.canMove
        focusPolicy: actions.focusPolicy
        onClicked: actions.presenter.moveStorage(actions.key)
    }
    AppButton {
        symbol: "captions.bubble.fill"
        text: "Subtitle"
        isCompact: actions.isCompact
        enabled: actions.content.hasVideo
        focusPolicy: actions.focusPolicy
        onClicked: actions.presenter.attachSubtitle(actions.key)
    }
    DownloadArea {
        presenter: actions.presenter
        key: actions.key
        content: actions.content
        downloadMenu: actions.downloadMenu
        isCompact: actions.isCompact
        focusPolicy: actions.focusPolicy
    }
    AppButton {
        kind: AppButton.Destructive
        symbol: "trash"
        text: "Delete"
        isCompact: actions.isCompact
        enabled: !actions.content.isUploading
        focusPolicy: actions.focusPolicy
        onClicked: actions.presenter.requestDelete(actions.key)
    }
}
