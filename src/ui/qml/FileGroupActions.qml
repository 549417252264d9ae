import QtQuick
import Quiv

// What can be done with a row's files; buttons stand in columns from row to row.
Row {
    id: actions

    required property fileGroupRowState content
    required property bool isCompact
    required property int focusPolicy

    signal moveRequested()
    signal attachRequested()
    signal downloadRequested(button: Item)
    signal downloadCancelled()
    signal deleteRequested()

    spacing: 6

    AppButton {
        symbol: "arrow.left.arrow.right"
        text: actions.content.moveTitle
        widestText: "Move to Internal"
        isCompact: actions.isCompact
        enabled: actions.content.canMove
        focusPolicy: actions.focusPolicy
        onClicked: actions.moveRequested()
    }
    AppButton {
        symbol: "captions.bubble.fill"
        text: "Subtitle"
        isCompact: actions.isCompact
        enabled: actions.content.hasVideo
        focusPolicy: actions.focusPolicy
        onClicked: actions.attachRequested()
    }
    DownloadArea {
        content: actions.content
        isCompact: actions.isCompact
        focusPolicy: actions.focusPolicy
        onDownloadRequested: button => actions.downloadRequested(button)
        onDownloadCancelled: actions.downloadCancelled()
    }
    AppButton {
        kind: AppButton.Destructive
        symbol: "trash"
        text: "Delete"
        isCompact: actions.isCompact
        enabled: !actions.content.isUploading
        focusPolicy: actions.focusPolicy
        onClicked: actions.deleteRequested()
    }
}
