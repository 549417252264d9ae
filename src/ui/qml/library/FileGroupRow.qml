import QtQuick
import QtQuick.Layouts
import Quiv

// One row of the library: a video with what belongs to it, or a file without a video.
Item {
    id: row

    required property LibraryPresenter presenter
    required property string key
    required property fileGroupRowState content
    required property ThumbnailStore thumbnails
    required property DownloadMenu downloadMenu
    property bool isCurrent: false
    property bool isCompact: false
    readonly property int focusPolicy: isCurrent ? Qt.TabFocus : Qt.NoFocus // one row's at a time

    implicitHeight: lines.implicitHeight + 18
    Accessible.role: Accessible.ListItem
    Accessible.name: content.title
    Accessible.description: content.subtitleText

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: 10
        color: hover.hovered ? Theme.rowHovered : "transparent"
        border.width: row.isCurrent && Appearance.isKeyboardInUse ? 2 : 0
        border.color: Theme.accent

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
    }
    ColumnLayout {
        id: lines

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        spacing: 0

        RowLayout {
            spacing: 12

            CachedThumbnailView {
                id: thumbnail

                store: row.thumbnails
                source: row.content.thumbnailURL
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 3

                PlainText {
                    Layout.fillWidth: true
                    text: row.content.title
                    font: Theme.headline
                }
                PlainText {
                    Layout.fillWidth: true
                    text: row.content.subtitleText
                    font: Theme.caption
                    color: Theme.secondaryText
                }
                PlainText {
                    Layout.fillWidth: true
                    visible: row.content.isUploading
                    text: "Uploading - not ready yet"
                    font: Theme.caption
                    color: Theme.notReady
                }
            }
            Badge {
                text: row.content.storageBadge.text
                tone: row.content.storageBadge.tone
            }
            PlaybackBadge {
                visible: text !== ""
                symbol: row.content.playbackSymbol
                text: row.content.playbackText
            }
            PlaybackIconButton {
                // Keeps its place, so that the columns line up.
                opacity: !row.content.hasVideo ? 0 : enabled ? 1 : 0.45
                enabled: row.content.hasVideo && !row.content.isUploading
                Accessible.ignored: !row.content.hasVideo
                isRound: true
                systemName: row.content.playSymbol
                tint: Theme.accent
                accessibilityLabel: "Play or pause"
                focusPolicy: row.focusPolicy
                onClicked: row.presenter.playOrPause(row.key)
            }
            FileGroupActions {
                presenter: row.presenter
                key: row.key
                content: row.content
                downloadMenu: row.downloadMenu
                isCompact: row.isCompact
                focusPolicy: row.focusPolicy
            }
        }
        RowMove {
            Layout.leftMargin: thumbnail.width + 12
            visible: content.isMoving
            content: row.content
        }
    }

    HoverHandler { id: hover }
}
