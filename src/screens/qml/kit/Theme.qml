pragma Singleton

import QtQuick

// Colour, type and spacing. The twelve colours are the only ones; the tints below them are one of them laid over another.
QtObject {
    readonly property color bg: "#F2EFE7"
    readonly property color surface: "#F7F4EC"
    readonly property color raised: "#ECE9E0"
    readonly property color border: "#C8DFDB"
    readonly property color text: "#1F3447"
    readonly property color muted: "#58718A"
    readonly property color accent: "#3368A0"
    readonly property color accentHover: "#28547F"
    readonly property color secondary: "#66A3BF"
    readonly property color accentSubtle: "#C8DFDB"
    readonly property color good: "#3368A0"
    readonly property color danger: "#B42318"

    readonly property color quiet: "#4F677F" // small secondary text: `muted` alone is too faint to read on `bg`
    readonly property color line: border
    readonly property color pencil: "#A8B3BA" // under fields, around secondary buttons
    readonly property color edge: "#778A9D" // around what is off
    readonly property color select: "#D9E5E0" // behind what is chosen or open
    readonly property color rail: "#EFECE4"
    readonly property color hover: Qt.alpha(text, 0.05)
    readonly property color press: Qt.alpha(text, 0.09)
    readonly property color scrim: Qt.alpha(text, 0.2)
    readonly property real disabledOpacity: 0.4

    // Inter falls back to the system's sans serif by itself.
    readonly property font page: Qt.font({ family: "Inter Display", pixelSize: 28, weight: Font.Bold, letterSpacing: -0.3 })
    readonly property font figure: Qt.font({ family: "Inter Display", pixelSize: 28, weight: Font.DemiBold, letterSpacing: -0.3 })
    readonly property font question: Qt.font({ family: "Inter Display", pixelSize: 20, weight: Font.DemiBold, letterSpacing: -0.1 })
    readonly property font answer: Qt.font({ family: "Inter Display", pixelSize: 18, weight: Font.DemiBold, letterSpacing: -0.1 })
    readonly property font pane: Qt.font({ family: "Inter Display", pixelSize: 17, weight: Font.DemiBold, letterSpacing: -0.1 })
    readonly property font prompt: Qt.font({ family: "Inter", pixelSize: 16, weight: Font.Medium, letterSpacing: -0.1 })
    readonly property font section: Qt.font({ family: "Inter", pixelSize: 15, weight: Font.DemiBold, letterSpacing: -0.1 })
    readonly property font body: Qt.font({ family: "Inter", pixelSize: 14 })
    readonly property font navigation: Qt.font({ family: "Inter", pixelSize: 14, weight: Font.Medium })
    readonly property font control: Qt.font({ family: "Inter", pixelSize: 13, weight: Font.Medium })
    readonly property font button: Qt.font({ family: "Inter", pixelSize: 13, weight: Font.DemiBold })
    readonly property font label: Qt.font({ family: "Inter", pixelSize: 12, weight: Font.DemiBold })
    readonly property font caption: Qt.font({ family: "Inter", pixelSize: 12 })
    readonly property font monospace: Qt.font({ family: "monospace", pixelSize: 12 })

    // The height of a line of each, in pixels.
    readonly property int pageLine: 36
    readonly property int figureLine: 36
    readonly property int questionLine: 28
    readonly property int answerLine: 26
    readonly property int paneLine: 24
    readonly property int promptLine: 26
    readonly property int sectionLine: 24
    readonly property int bodyLine: 22
    readonly property int controlLine: 20
    readonly property int labelLine: 16
    readonly property int captionLine: 16
    readonly property int monospaceLine: 20

    readonly property int smallHeight: 28
    readonly property int controlHeight: 32
    readonly property int primaryHeight: 36
    readonly property int rowHeight: 40
    readonly property int listRowHeight: 56 // of two lines
    readonly property int toolbarHeight: 56
    readonly property int historyRowHeight: 68
    readonly property int railWidth: 204
    readonly property int betweenFields: 24
    readonly property int betweenCards: 12
    readonly property int betweenButtons: 12
    readonly property int fromEdges: 12 // what opens over the window keeps this from its edges
    readonly property int smallRadius: 6
    readonly property int controlRadius: 8
    readonly property int cardRadius: 12
    readonly property int sheetRadius: 16
}
