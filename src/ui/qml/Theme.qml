pragma Singleton

import QtQuick
import Quiv

// Colours, type and measures: the one place that knows them.
QtObject {
    readonly property bool dark: Appearance.isDark

    readonly property color window: dark ? "#17181c" : "#f6f7f9"
    readonly property color sidebar: dark ? "#1e2025" : "#eceef2"
    readonly property color surface: dark ? "#24262c" : "#ffffff"
    readonly property color surfaceHovered: dark ? "#2b2e35" : "#f7f8fa"
    readonly property color surfacePressed: dark ? "#32353d" : "#eef0f3"
    readonly property color separator: dark ? "#17ffffff" : "#17141821"
    readonly property color controlBorder: dark ? "#1fffffff" : "#24141821"
    readonly property color tileOutline: "#408e8e93"
    readonly property color rowHovered: dark ? "#0dffffff" : "#0a141821"
    readonly property color scrollThumb: dark ? "#47ffffff" : "#47141821"
    readonly property color scrollThumbActive: dark ? "#80ffffff" : "#80141821"
    readonly property color scrim: dark ? "#80000000" : "#52141821"
    readonly property color shadow: dark ? "#0b000000" : "#05000000"

    readonly property color primaryText: dark ? "#eceef2" : "#1b1d22"
    readonly property color secondaryText: dark ? "#a7adb9" : "#596170"
    readonly property color tertiaryText: dark ? "#8b919d" : "#6f7684"

    readonly property color accent: dark ? "#7d98ff" : "#3558e6"
    readonly property color accentHovered: dark ? "#8fa6ff" : "#2c4ed8"
    readonly property color accentPressed: dark ? "#6f8af0" : "#2442bf"
    readonly property color accentInk: dark ? "#10131c" : "#ffffff"
    readonly property color accentFill: dark ? "#2e7d98ff" : "#1f3558e6"
    readonly property color accentFillHovered: dark ? "#4d7d98ff" : "#333558e6"
    readonly property color dropFill: dark ? "#247d98ff" : "#243558e6"
    readonly property color dropOutline: dark ? "#e67d98ff" : "#e63558e6"
    readonly property color notReady: dark ? "#e3b65c" : "#9e7014"
    readonly property color track: dark ? "#24ffffff" : "#1a141821"
    readonly property color knob: dark ? "#eceef2" : "#ffffff"
    readonly property color knobBorder: dark ? "#00000000" : "#33141821"
    readonly property color disabledFill: dark ? "#24ffffff" : "#1a141821"
    readonly property color destructive: dark ? "#ff8079" : "#b3261e"
    readonly property color selectedTv: dark ? "#2fb36a" : "#1d9a55"

    readonly property color stripFill: dark ? "#24ff9f0a" : "#1fff9500"
    readonly property color stripLabel: dark ? "#ffbe85" : "#8c330d"
    readonly property color progressFill: "#248e8e93"
    readonly property color placeholderFill: dark ? "#338e8e93" : "#338e8e93"

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
    readonly property int quick: 120   // ms, answers to the pointer
    readonly property int gentle: 180  // ms, what comes and goes

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
            return dark ? "#b9f0cd" : "#084724"
        case BadgeTone.Amber:
            return dark ? "#ffdfa6" : "#663305"
        default:
            return primaryText
        }
    }

    function badgeFill(tone: int): color {
        switch (tone) {
        case BadgeTone.Green:
            return dark ? "#12402a" : "#b3f2cc"
        case BadgeTone.Usb:
            return dark ? "#12402a" : "#b5edcc"
        case BadgeTone.Amber:
            return dark ? "#4a3208" : "#ffdba1"
        case BadgeTone.Internal:
            return dark ? "#428e8e93" : "#338e8e93"
        default:
            return dark ? "#428e8e93" : "#2e8e8e93"
        }
    }
}
