pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// Typed answers one under the other, each with its question where there are several.
Column {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools

    readonly property bool showsPrompts: root.card.results.length >= 2

    Repeater {
        model: root.card.results

        Item {
            id: row

            required property var modelData
            required property int index

            width: root.width
            height: answer.y + answer.height + 9

            Hairline {
                width: row.width
                visible: row.index > 0
            }
            Words {
                id: prompt

                y: 9
                width: row.width
                visible: root.showsPrompts
                text: row.modelData.prompt
                font: Theme.caption
                color: Theme.quiet
                wrapMode: Text.Wrap
                lineHeight: Theme.captionLine
                lineHeightMode: Text.FixedHeight
            }
            ResultText {
                id: answer

                y: root.showsPrompts ? prompt.y + prompt.height + 2 : 2
                width: row.width
                result: row.modelData
            }
        }
    }

    JudgingFoot {
        width: root.width
        card: root.card
        tools: root.tools
    }
}
