import QtQuick
import QtQuick.Layouts
import Quiv

// What a row is called, and what there is to say about it.
ColumnLayout {
    id: title

    required property fileGroupRowState content
    required property bool wraps // on to a second line

    spacing: 3

    PlainText {
        Layout.fillWidth: true
        text: title.content.title
        font: Theme.headline
        wrapMode: title.wraps ? Text.Wrap : Text.NoWrap
        maximumLineCount: title.wraps ? 2 : 1
        elide: title.wraps ? Text.ElideRight : Text.ElideMiddle // episodes differ at the end
    }
    PlainText {
        Layout.fillWidth: true
        text: title.content.subtitleText
        font: Theme.caption
        color: Theme.secondaryText
    }
    PlainText {
        Layout.fillWidth: true
        visible: title.content.isUploading
        text: "Uploading - not ready yet"
        font: Theme.caption
        color: Theme.notReady
    }
}
