import QtQuick
import QtQuick.Layouts
import Quiv

// What the TV plays, with its controls.
Item {
    id: dock

    required property DockPresenter presenter
    readonly property dockState content: presenter.state
    readonly property dockWaiting waiting: presenter.waiting

    implicitHeight: lines.implicitHeight + 2 * lines.anchors.margins
    Accessible.role: Accessible.Grouping
    Accessible.name: content.stateText

    Shadow {
        cornerRadius: Theme.dockRadius
        reach: 16
        opacity: 0.5
    }
    Panel {
        anchors.fill: parent
        radius: Theme.dockRadius
        outline: Theme.separator
    }
    ColumnLayout {
        id: lines

        anchors.fill: parent
        anchors.margins: 16
        spacing: 8

        GridLayout {
            columns: dock.width < Theme.scaled(440) ? 5 : 6
            columnSpacing: 8
            rowSpacing: 8

            ColumnLayout {
                Layout.fillWidth: true
                Layout.columnSpan: parent.columns === 5 ? 5 : 1
                spacing: 1

                PlainText {
                    Layout.fillWidth: true
                    text: dock.content.title
                    font: Theme.headline
                    elide: Text.ElideMiddle
                }
                PlainText {
                    Layout.fillWidth: true
                    text: dock.content.stateText
                    font: Theme.caption
                    color: Theme.secondaryText
                }
            }
            PlaybackIconButton {
                systemName: dock.content.playSymbol
                tint: Theme.accent
                accessibilityLabel: "Play or pause"
                isWaiting: dock.waiting.play
                shortcut: "Space"
                onClicked: dock.presenter.playOrPause()
            }
            PlaybackIconButton {
                systemName: "stop.fill"
                accessibilityLabel: "Stop"
                isWaiting: dock.waiting.stop
                onClicked: dock.presenter.stop()
            }
            PlaybackIconButton {
                systemName: "gobackward.10"
                accessibilityLabel: "Back 10 seconds"
                isWaiting: dock.waiting.back
                onClicked: dock.presenter.seekBack()
            }
            PlaybackIconButton {
                systemName: "goforward.10"
                accessibilityLabel: "Forward 10 seconds"
                isWaiting: dock.waiting.forward
                onClicked: dock.presenter.seekForward()
            }
            AppButton {
                symbol: "laptopcomputer"
                text: "Play Here"
                onClicked: dock.presenter.playHere()
            }
        }
        DockTimelineRow {
            Layout.fillWidth: true
            presenter: dock.presenter
        }
        DockMenus {
            Layout.fillWidth: true
            presenter: dock.presenter
        }
    }
}
