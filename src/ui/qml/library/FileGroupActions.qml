import QtQuick
import Quiv

// What can be done with a row's files; buttons stand in columns from row to row.
Row {
    id: actions

    required property LibraryPresenter presenter
    required property string key // of the row
    required property fileGroupRowState content
    required property ActionMenu menu
    required property RowMeasures measures
    required property int focusPolicy
    readonly property bool isCompact: measures.isCompact

    spacing: measures.buttonSpacing

    AppButton {
        width: actions.isCompact ? implicitWidth : actions.measures.moveWidth
        symbol: "arrow.left.arrow.right"
        text: actions.content.moveTitle
        widestText: "Move to Internal"
        isCompact: actions.isCompact
        enabled: actions.content.canMove
        isWaiting: actions.content.isMoveWaiting
        focusPolicy: actions.focusPolicy
        onClicked: actions.presenter.moveStorage(actions.key)
    }
    AppButton {
        width: actions.isCompact ? implicitWidth : actions.measures.subtitleWidth
        symbol: "captions.bubble.fill"
        text: "Subtitle"
        isCompact: actions.isCompact
        enabled: actions.content.hasVideo
        focusPolicy: actions.focusPolicy
        onClicked: actions.presenter.attachSubtitle(actions.key)
    }
    DownloadArea {
        wideWidth: actions.measures.downloadWidth
        presenter: actions.presenter
        key: actions.key
        content: actions.content
        menu: actions.menu
        isCompact: actions.isCompact
        isTight: actions.isCompact && !actions.measures.showsStorage
        focusPolicy: actions.focusPolicy
    }
    AppButton {
        width: actions.isCompact ? implicitWidth : actions.measures.deleteWidth
        kind: AppButton.Destructive
        symbol: "trash"
        text: "Delete"
        shortcut: "Delete"
        isCompact: actions.isCompact
        enabled: actions.content.canDelete
        isWaiting: actions.content.isDeleteWaiting
        focusPolicy: actions.focusPolicy
        onClicked: actions.presenter.requestDelete(actions.key)
    }
}
