import QtQuick
import Quorl

// One comparison: what was asked, and what was answered.
Item {
    id: root

    required property RunDetailScreen screen

    readonly property int padding: root.width < 500 ? 20 : 32

    Keys.forwardTo: [keys]

    Timer {
        interval: 60000
        running: root.visible
        repeat: true
        onTriggered: root.screen.refresh()
    }

    ScrollPane {
        id: scroll

        anchors.fill: parent
        visible: root.screen.hasRun
        pixelAligned: true // a hairline between two pixels would not be drawn
        contentHeight: content.y + content.height + root.padding

        Column {
            id: content

            x: root.padding
            y: 28
            width: root.width - 2 * root.padding

            PageHeader {
                width: content.width
                title: root.screen.title
                subtitle: root.screen.subtitle

                SecondaryButton {
                    text: qsTr("Run a variation")
                    onClicked: root.screen.runVariation()
                }
                SecondaryButton {
                    text: qsTr("Delete")
                    isDestructive: true
                    onClicked: root.screen.requestDelete()
                }
            }
            Item {
                width: 1
                height: 20
            }
            RunDetailBlock {
                width: content.width
                label: root.screen.promptLabel
                text: root.screen.prompt
                page: scroll
            }
            RunDetailBlock {
                width: content.width
                visible: root.screen.questions !== ""
                text: root.screen.questions
                isQuiet: true
                page: scroll
            }
            RunDetailBlock {
                width: content.width
                visible: root.screen.systemPrompt !== ""
                label: qsTr("System prompt")
                text: root.screen.systemPrompt
                page: scroll
            }
            Hairline {
                width: content.width
            }
            Item {
                width: 1
                height: 24
            }
            AnswerCards {
                id: cards

                width: content.width
                answers: root.screen.cards
                tools: tools
                pane: scroll
            }
        }
    }

    AnswerTools {
        id: tools

        cards: root.screen.cards
    }

    AnswerKeys {
        id: keys

        isOn: root.visible
        cards: cards
    }
}
