import QtQuick
import QtQuick.Layouts
import Quiv

// The video that plays here, beside what can be done with it.
Item {
    id: panel

    required property LocalPanelPresenter presenter
    required property Item fullScreenArea // of the window, to which the picture moves
    readonly property localPanelState content: presenter.state
    readonly property int sideWidth: Math.min(Theme.scaled(198), width * 0.45)
    readonly property int pictureHeight: Math.min(
        Math.round(Window.height * 0.38), Math.round((width - sideWidth - 3 * 12) * 9 / 16))

    implicitHeight: Math.max(pictureHeight, side.implicitHeight) + 24
    Accessible.role: Accessible.Grouping
    Accessible.name: "Playing on this Mac"

    Panel {
        anchors.fill: parent
        radius: Theme.dockRadius
        outline: Theme.separator
    }
    Item {
        id: place

        x: 12
        y: 12
        width: Math.round(panel.pictureHeight * 16 / 9)
        height: panel.height - 24

        LocalPlayerStage {
            parent: panel.presenter.isFullScreen ? panel.fullScreenArea : place
            anchors.fill: parent
            presenter: panel.presenter
        }
    }
    ColumnLayout {
        id: side

        anchors.left: place.right
        anchors.right: parent.right
        anchors.top: place.top
        anchors.bottom: place.bottom
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        spacing: 8

        PlainText {
            Layout.fillWidth: true
            text: "Playing on this Mac"
            font: Theme.caption
            color: Theme.secondaryText
        }
        PlainText {
            Layout.fillWidth: true
            Layout.topMargin: -6
            text: panel.content.title
            font: Theme.headline
            wrapMode: Text.Wrap
            maximumLineCount: 3
        }
        ChoiceMenu {
            Layout.topMargin: 4
            Layout.fillWidth: true
            Layout.maximumWidth: implicitWidth
            opensDown: true
            enabled: panel.content.subtitles.length > 0 // they are known
            label: "Subtitles"
            choices: panel.content.subtitles
            currentIndex: panel.content.subtitleIndex
            onChosen: index => panel.presenter.chooseSubtitle(index)
        }
        ChoiceMenu {
            Layout.fillWidth: true
            Layout.maximumWidth: implicitWidth
            visible: panel.content.audioTracks.length > 0
            opensDown: true
            label: "Audio"
            choices: panel.content.audioTracks
            currentIndex: panel.content.audioIndex
            onChosen: index => panel.presenter.chooseAudio(index)
        }
        Item { Layout.fillHeight: true }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            AppButton {
                symbol: "tv"
                text: "Play on TV"
                onClicked: panel.presenter.playOnTV()
            }
            AppButton {
                symbol: "xmark"
                text: "Close"
                onClicked: panel.presenter.close()
            }
        }
    }
}
