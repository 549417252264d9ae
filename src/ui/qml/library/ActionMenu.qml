import QtQuick
import Quiv

// What can be done with a row, or which of its files can be downloaded.
ChoicePopup {
    id: menu

    required property ActionMenuPresenter presenter
    property Item opener: null // gets the focus back

    // Below a button, or with its corner at a place in the item.
    function openBelow(item: Item) {
        openAt(item, Math.max(0, item.width - width), item.height + 4)
    }

    function openAt(item: Item, left: real, top: real) {
        opener = item.Window.activeFocusItem
        parent = item
        x = left
        y = top
        open()
    }

    narrowest: Theme.scaled(220)
    label: presenter.label
    choices: presenter.texts
    symbols: presenter.symbols
    enabledStates: presenter.enabledStates
    currentIndex: -1
    onChosen: index => presenter.choose(index)
    onClosed: opener?.forceActiveFocus()
}
