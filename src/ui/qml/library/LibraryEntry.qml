import QtQuick
import Quiv

// One row of the list: of the queue or of the library. Takes the focus itself; from there the keys
// lead to its buttons.
FocusScope {
    id: entry

    required property int index
    required property string key
    required property bool isUpload
    required property queueRow upload
    required property fileGroupRowState content
    required property bool isCurrent
    required property bool isInView // the current row is kept when it is not
    required property LibraryPresenter presenter
    required property UploadsPresenter uploads
    required property ThumbnailStore thumbnails
    required property RowMeasures measures
    required property ActionMenu menu
    readonly property bool isMarked: entry.Window.activeFocusItem === entry
                                     && Appearance.isKeyboardInUse
    // Buttons of other rows are for the pointer, which makes their row the current one.
    readonly property int focusPolicy: isCurrent ? Qt.StrongFocus : Qt.ClickFocus

    signal picked(modifiers: int)
    signal menuAsked(x: real, y: real)
    signal activated()

    implicitHeight: isUpload ? uploadRow.implicitHeight : libraryRow.implicitHeight
    activeFocusOnTab: isCurrent || activeFocus // cannot be taken back from what has the focus
    onIsCurrentChanged: if (!isCurrent) FocusSteps.forget(entry) // it is entered at its beginning
    Accessible.role: Accessible.ListItem
    Accessible.name: isUpload ? upload.fileName : content.title
    Accessible.description: isUpload ? upload.statusText : content.subtitleText
    Accessible.focusable: true
    Accessible.selectable: !isUpload
    Accessible.selected: content.isSelected
    Accessible.onPressAction: activated()

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: event => {
            if (event.button === Qt.RightButton)
                entry.menuAsked(event.x, event.y)
            else
                entry.picked(event.modifiers)
        }
        onDoubleClicked: event => {
            if (event.button === Qt.LeftButton)
                entry.activated()
        }
    }
    UploadQueueRow {
        id: uploadRow

        width: parent.width
        visible: entry.isUpload
        presenter: entry.uploads
        key: entry.key
        content: entry.upload
        isFirst: entry.index === 0
        isLast: entry.index === entry.uploads.count - 1
        isMarked: entry.isMarked
        focusPolicy: entry.focusPolicy
    }
    FileGroupRow {
        id: libraryRow

        x: Theme.padding - entry.measures.margin
        width: parent.width - 2 * x // beside it is the scroll bar
        visible: !entry.isUpload
        presenter: entry.presenter
        key: entry.key
        content: entry.content
        thumbnails: entry.thumbnails
        isInView: entry.isInView
        measures: entry.measures
        menu: entry.menu
        isMarked: entry.isMarked
        isHovered: hover.hovered
        focusPolicy: entry.focusPolicy
    }
    HoverHandler { id: hover }
}
