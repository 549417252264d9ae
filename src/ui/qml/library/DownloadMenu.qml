import QtQuick
import Quiv

// The files of a row to download.
ChoicePopup {
    id: menu

    required property DownloadMenuPresenter presenter
    property Item button: null

    function openAt(item: Item) {
        button = item
        parent = item
        open()
    }

    x: (button?.width ?? 0) - width
    y: (button?.height ?? 0) + 4
    narrowest: Theme.scaled(220)
    label: "Download"
    choices: presenter.names
    symbols: presenter.symbols
    currentIndex: -1
    onChosen: index => presenter.choose(index)
    onClosed: button?.forceActiveFocus()
}
