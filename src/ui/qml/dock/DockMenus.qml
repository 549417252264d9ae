import QtQuick
import Quiv

// The tracks and the speed, as the TV reports them.
Flow {
    id: menus

    required property DockPresenter presenter
    readonly property dockState content: presenter.state
    readonly property bool hasAudio: content.audioTracks.length > 0
    readonly property real menuWidth: Math.min(Theme.scaled(190), (width - spacing) / 2)

    spacing: 8

    ChoiceMenu {
        width: menus.menuWidth
        label: "Subtitle"
        choices: menus.content.subtitles
        currentIndex: menus.content.subtitleIndex
        isWaiting: menus.presenter.waiting.subtitle
        onChosen: index => menus.presenter.chooseSubtitle(index)
    }
    ChoiceMenu {
        width: menus.menuWidth
        visible: menus.hasAudio
        label: "Audio"
        choices: menus.content.audioTracks
        currentIndex: menus.content.audioIndex
        isWaiting: menus.presenter.waiting.audio
        onChosen: index => menus.presenter.chooseAudio(index)
    }
    Item {
        visible: !menus.hasAudio
        implicitWidth: menus.menuWidth
        implicitHeight: Theme.controlHeight

        Row {
            anchors.verticalCenter: parent.verticalCenter
            x: 13
            spacing: 7

            PlainText {
                text: "Audio"
                color: Theme.secondaryText
            }
            PlainText {
                text: "n/a"
                color: Theme.tertiaryText
            }
        }
    }
    ChoiceMenu {
        width: menus.menuWidth
        label: "Speed"
        choices: menus.content.speeds
        currentIndex: menus.content.speedIndex
        isWaiting: menus.presenter.waiting.speed
        onChosen: index => menus.presenter.chooseSpeed(index)
    }
}
