pragma Singleton

import QtQuick

// Knows which button of a menu is under the pointer.
QtObject {
    property Item hovered: null

    function hover(button: Item, isHovered: bool) {
        if (isHovered)
            hovered = button
        else if (hovered === button)
            hovered = null
    }

    // Whether the pointer is on the button of another menu than this one's.
    function isOther(button: Item): bool {
        return hovered !== null && hovered !== button
    }
}
