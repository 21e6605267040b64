pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// Everything that is known of an answer.
Column {
    id: root

    required property AnswerCardModel card

    spacing: 12

    SelectableText {
        width: root.width
        height: implicitHeight
        visible: root.card.error !== ""
        text: root.card.error
        color: Theme.danger
    }

    Column {
        width: root.width
        spacing: 4

        Repeater {
            model: [[qsTr("Time: "), root.card.time], [qsTr("Tokens: "), root.card.tokens], [qsTr("Cost: "), root.card.cost]]

            DetailLine {
                required property var modelData

                width: root.width
                visible: modelData[1] !== ""
                label: modelData[0]
                value: modelData[1]
            }
        }
    }

    Repeater {
        model: root.card.results

        DetailedResult {
            required property var modelData

            width: root.width
            result: modelData
        }
    }

    Hairline {
        width: root.width
    }

    Words {
        text: qsTr("Raw response")
        font: Theme.label
        color: Theme.quiet
    }

    LongText {
        id: raw

        width: root.width
        height: Math.min(fullHeight, 8 * Theme.controlLine)
        text: root.card.text
        font: root.card.isDecision ? Theme.monospace : Theme.caption
        line: Theme.controlLine
    }
}
