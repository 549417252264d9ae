import QtQuick

// How wide the columns of the library's rows are, so that they line up from row to row, and whether
// the buttons' words leave room for the title.
QtObject {
    id: measures

    required property real rowWidth

    readonly property int margin: 10
    readonly property int spacing: 12
    readonly property int buttonSpacing: 6
    readonly property int thumbnailWidth: 120
    readonly property int narrowestTitle: Theme.scaled(360)

    readonly property int storageWidth: Math.ceil(Math.max(usb.advanceWidth, internal.advanceWidth)) + 1 + 20
    readonly property int moveWidth: buttonWidth(move.advanceWidth)
    readonly property int subtitleWidth: buttonWidth(subtitle.advanceWidth)
    readonly property int downloadWidth: Math.max(buttonWidth(download.advanceWidth) + Theme.scaled(10) + 7,
                                                  Math.ceil(cancel.advanceWidth) + 2 * 9)
    readonly property int deleteWidth: buttonWidth(erase.advanceWidth)
    readonly property int wideButtons: moveWidth + subtitleWidth + downloadWidth + deleteWidth
                                       + 3 * buttonSpacing
    readonly property int titleWidth: rowWidth - 2 * margin - thumbnailWidth - storageWidth
                                      - Theme.scaled(30) - wideButtons - 4 * spacing
    readonly property bool isCompact: titleWidth < narrowestTitle
    // Large type on a small window: what can be missed makes room for the title.
    readonly property int compactTitleWidth: titleWidth + wideButtons - 4 * (Theme.scaled(30) + 2)
                                             - 3 * buttonSpacing
    readonly property int narrowestCompactTitle: Theme.scaled(150)
    readonly property bool showsStorage: compactTitleWidth >= narrowestCompactTitle
    readonly property bool showsThumbnail: compactTitleWidth + storageWidth + spacing
                                           >= narrowestCompactTitle
    readonly property bool wrapsTitle: compactTitleWidth + storageWidth + thumbnailWidth
                                       + 2 * spacing < narrowestCompactTitle

    readonly property TextMetrics usb: TextMetrics { font: Theme.captionSemibold; text: "USB" }
    readonly property TextMetrics internal: TextMetrics { font: Theme.captionSemibold; text: "Internal" }
    readonly property TextMetrics move: TextMetrics { font: Theme.button; text: "Move to Internal" }
    readonly property TextMetrics subtitle: TextMetrics { font: Theme.button; text: "Subtitle" }
    readonly property TextMetrics download: TextMetrics { font: Theme.button; text: "Download" }
    readonly property TextMetrics cancel: TextMetrics { font: Theme.button; text: "Cancel download" }
    readonly property TextMetrics erase: TextMetrics { font: Theme.button; text: "Delete" }

    // With its symbol and margins.
    function buttonWidth(textWidth: real): int {
        return Math.ceil(textWidth) + 1 + Theme.scaled(15) + 7 + 2 * 12
    }
}
