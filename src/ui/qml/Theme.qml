pragma Singleton

import QtQuick
import Quiv

// Colours, type and measures: the one place that knows them.
QtObject {
    readonly property themePalette colours: Appearance.palette

    readonly property color window: colours.window
    readonly property color sidebar: colours.sidebar
    readonly property color surface: colours.surface
    readonly property color surfaceHovered: colours.surfaceHovered
    readonly property color surfacePressed: colours.surfacePressed
    readonly property color separator: colours.separator
    readonly property color controlBorder: colours.controlBorder
    readonly property color fieldBorder: colours.fieldBorder
    readonly property color tileOutline: colours.tileOutline
    readonly property color rowHovered: colours.rowHovered
    readonly property color scrollThumb: colours.scrollThumb
    readonly property color scrollThumbActive: colours.scrollThumbActive
    readonly property color scrim: colours.scrim
    readonly property color shadow: colours.shadow
    readonly property color primaryText: colours.primaryText
    readonly property color secondaryText: colours.secondaryText
    readonly property color tertiaryText: colours.tertiaryText
    readonly property color accent: colours.accent
    readonly property color accentHovered: colours.accentHovered
    readonly property color accentPressed: colours.accentPressed
    readonly property color accentInk: colours.accentInk
    readonly property color accentText: colours.accentText
    readonly property color accentFill: colours.accentFill
    readonly property color accentFillHovered: colours.accentFillHovered
    readonly property color dropFill: colours.dropFill
    readonly property color dropOutline: colours.dropOutline
    readonly property color notReady: colours.notReady
    readonly property color track: colours.track
    readonly property color knob: colours.knob
    readonly property color knobBorder: colours.knobBorder
    readonly property color disabledFill: colours.disabledFill
    readonly property color destructive: colours.destructive
    readonly property color selectedTv: colours.selectedTv
    readonly property color stripFill: colours.stripFill
    readonly property color stripLabel: colours.stripLabel
    readonly property color progressFill: colours.progressFill
    readonly property color placeholderFill: colours.placeholderFill

    readonly property real scale: Appearance.fontPixelSize / 13
    readonly property font title: textFont(17, Font.Bold)
    readonly property font titleSemibold: textFont(17, Font.DemiBold)
    readonly property font headline: textFont(14, Font.DemiBold)
    readonly property font body: textFont(13, Font.Normal)
    readonly property font button: textFont(13, Font.Medium)
    readonly property font subheadline: textFont(12, Font.Normal)
    readonly property font subheadlineSemibold: textFont(12, Font.DemiBold)
    readonly property font caption: textFont(11.5, Font.Normal)
    readonly property font captionSemibold: textFont(11.5, Font.DemiBold)
    readonly property font caption2: textFont(11, Font.Normal)
    readonly property font code: textFont(28, Font.DemiBold)
    readonly property font codePlaceholder: textFont(20, Font.Normal)

    readonly property int padding: 20
    readonly property int gap: 14
    readonly property int sidebarWidth: Math.min(scaled(272), 340)
    readonly property int controlHeight: scaled(30)
    readonly property int widestContent: scaled(1440) // lines get too long to read beyond it
    readonly property int controlRadius: 8
    readonly property int cardRadius: 12
    readonly property int dockRadius: 14
    readonly property int overlayRadius: 18
    readonly property bool moves: !Appearance.isMotionReduced
    readonly property int quick: moves ? 120 : 0  // ms, answers to the pointer
    readonly property int gentle: moves ? 150 : 0 // ms, what comes and goes
    readonly property real hairline: Appearance.hairline // a line of whole device pixels

    function scaled(units: real): int {
        return Math.round(units * scale)
    }

    function textFont(size: real, weight: int): font {
        return Appearance.textFont(size * scale, weight)
    }

    function badgeText(tone: int): color {
        switch (tone) {
        case BadgeTone.Green:
        case BadgeTone.Usb:
            return colours.greenText
        case BadgeTone.Amber:
            return colours.amberText
        default:
            return primaryText
        }
    }

    function badgeFill(tone: int): color {
        switch (tone) {
        case BadgeTone.Green:
            return colours.greenFill
        case BadgeTone.Usb:
            return colours.usbFill
        case BadgeTone.Amber:
            return colours.amberFill
        case BadgeTone.Internal:
            return colours.internalFill
        default:
            return colours.neutralFill
        }
    }
}
