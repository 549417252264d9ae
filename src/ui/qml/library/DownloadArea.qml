import QtQuick
import Quiv

// Downloads one of a row's files, and shows how far it has come.
Item {
    id: area

    required property LibraryPresenter presenter
    required property string key // of the row
    required property fileGroupRowState content
    required property ActionMenu menu
    required property bool isCompact
    required property int focusPolicy
    // Button and progress are equally wide, so that columns line up, but where the symbol alone is.
    required property int wideWidth

    // Progress alone where the title needs the room.
    required property bool isTight
    readonly property int progressWidth: isTight ? Theme.scaled(52) : wideWidth

    implicitWidth: !isCompact ? wideWidth
                              : content.isDownloading ? progressWidth : button.implicitWidth
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
        isWaiting: area.content.isDownloadWaiting
        focusPolicy: area.focusPolicy
        onClicked: if (area.presenter.offerDownloads(area.key)) area.menu.openBelow(button)
    }
    DownloadProgress {
        anchors.fill: parent
        isTight: area.isTight
        visible: area.content.isDownloading
        fraction: area.content.downloadFraction
        percentText: area.content.downloadPercentText
        focusPolicy: area.focusPolicy
        onEnded: area.presenter.cancelDownload()
    }
}
