import QtQuick
import Quiv

// Downloads one of a row's files, and shows how far it has come.
Item {
    id: area

    required property LibraryPresenter presenter
    required property string key // of the row
    required property fileGroupRowState content
    required property DownloadMenu downloadMenu
    required property bool isCompact
    required property int focusPolicy

    // Button and progress are equally wide, so that columns line up, but where the symbol alone is.
    readonly property bool isWide: !isCompact || content.isDownloading
    readonly property int wideWidth: Math.max(button.implicitWidth, progress.implicitWidth)

    implicitWidth: isWide ? wideWidth : button.implicitWidth
    implicitHeight: button.implicitHeight

    AppButton {
        id: button

        width: parent.width
        visible: !area.content.isDownloading
        symbol: "arrow.down.circle"
        text: "Download"
        opensMenu: true
        isCompact: area.isCompact
        enabled: area.content.canDownload
        focusPolicy: area.focusPolicy
        onClicked: if (area.presenter.offerDownloads(area.key)) area.downloadMenu.openAt(button)
    }
    DownloadProgress {
        id: progress

        anchors.fill: parent
        visible: area.content.isDownloading
        fraction: area.content.downloadFraction
        percentText: area.content.downloadPercentText
        focusPolicy: area.focusPolicy
        onClicked: area.presenter.cancelDownload()
    }
}
