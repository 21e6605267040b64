import QtQuick
import Quorl

Column {
    id: root

    required property string text
    required property string time
    required property string tokens
    required property string cost

    spacing: 12

    SelectableText {
        width: root.width
        text: root.text
    }

    AnswerFigures {
        width: root.width
        time: root.time
        tokens: root.tokens
        cost: root.cost
    }
}
