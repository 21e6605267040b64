import QtQuick
import Quorl

// The saved examples: how many they are, and the list of them on demand.
ScrollPane {
    id: root

    required property DatasetScreen screen

    readonly property int padding: root.width < 500 ? 20 : 32
    readonly property real columnWidth: Math.min(root.width - 2 * root.padding, 880)

    contentWidth: root.width
    contentHeight: browser.visible ? browser.y + browser.height : card.y + card.height + 24

    PageHeader {
        id: head

        x: root.padding
        y: 28
        width: root.columnWidth
        title: qsTr("Dataset")

        SecondaryButton {
            text: qsTr("Export JSONL")
            enabled: !root.screen.isEmpty
            onClicked: root.screen.exportAll()
        }
    }

    EmptyPane {
        x: root.padding
        anchors { top: head.bottom; topMargin: 24 }
        width: root.columnWidth
        visible: root.screen.isEmpty
        title: qsTr("Nothing saved yet")
        message: qsTr("Use the bookmark beside an answer to save it here.")
        symbol: Symbols.bookmark
    }

    DatasetCard {
        id: card

        x: root.padding
        anchors { top: head.bottom; topMargin: 24 }
        width: root.columnWidth
        visible: !root.screen.isEmpty
        count: root.screen.count
        isOpen: root.screen.showsExamples
        onClicked: root.screen.toggleExamples()
    }

    ExampleBrowser {
        id: browser

        y: card.y + card.height + 24
        width: root.width
        height: Math.max(root.height - y, 300) // in a low window the whole screen scrolls
        screen: root.screen
        inset: root.padding
        rowWidth: root.columnWidth
        isOpen: root.screen.showsExamples && !root.screen.isEmpty
    }
}
