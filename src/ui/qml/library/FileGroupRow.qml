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
    required property bool isInView
    required property RowMeasures measures
    required property ActionMenu menu
    required property bool isMarked // has the focus itself
    required property bool isHovered
    required property int focusPolicy
    readonly property real contentOpacity: content.isDimmed ? 0.5 : 1
    readonly property color resting: content.isSelected ? Theme.accentFill : "transparent"

    implicitHeight: lines.implicitHeight + 18

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: 10
        color: row.isHovered && !row.content.isSelected ? Theme.rowHovered : row.resting
        border.width: row.isMarked ? 2 : 0
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
        anchors.leftMargin: row.measures.margin
        anchors.rightMargin: row.measures.margin
        spacing: 0

        RowLayout {
            spacing: row.measures.spacing

            CachedThumbnailView {
                opacity: row.contentOpacity
                Layout.preferredWidth: row.measures.thumbnailWidth
                visible: row.measures.showsThumbnail
                store: row.thumbnails
                source: row.isInView ? row.content.thumbnailURL : ""
            }
            FileGroupTitle {
                opacity: row.contentOpacity
                Layout.fillWidth: true
                content: row.content
                wraps: row.measures.wrapsTitle
            }
            PlaybackBadge {
                opacity: row.contentOpacity
                visible: text !== "" && row.measures.showsStorage
                symbol: row.content.playbackSymbol
                text: row.content.playbackText
            }
            Badge {
                opacity: row.contentOpacity
                Layout.preferredWidth: row.measures.storageWidth
                visible: row.measures.showsStorage
                text: row.content.storageBadge.text
                tone: row.content.storageBadge.tone
            }
            PlaybackIconButton {
                // Keeps its place, so that the columns line up.
                opacity: !row.content.hasVideo ? 0 : enabled ? 1 : 0.45
                enabled: row.content.canPlay
                isWaiting: row.content.isPlayWaiting
                Accessible.ignored: !row.content.hasVideo
                isRound: true
                systemName: row.content.playSymbol
                tint: Theme.accent
                accessibilityLabel: "Play or pause"
                shortcut: "Enter"
                focusPolicy: row.focusPolicy
                onClicked: row.presenter.playOrPause(row.key)
            }
            FileGroupActions {
                presenter: row.presenter
                key: row.key
                content: row.content
                menu: row.menu
                measures: row.measures
                focusPolicy: row.focusPolicy
            }
        }
        RowMove {
            Layout.leftMargin: row.measures.showsThumbnail
                               ? row.measures.thumbnailWidth + row.measures.spacing : 0
            visible: content.isMoving
            content: row.content
        }
    }
}
