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

    implicitWidth: isCompact && !content.isDownloading ? button.implicitWidth : wideWidth
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
        onClicked: if (area.presenter.offerDownloads(area.key)) area.menu.openBelow(button)
    }
    DownloadProgress {
        anchors.fill: parent
        visible: area.content.isDownloading
        fraction: area.content.downloadFraction
        percentText: area.content.downloadPercentText
        focusPolicy: area.focusPolicy
        onEnded: area.presenter.cancelDownload()
    }
}
