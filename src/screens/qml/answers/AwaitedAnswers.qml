import QtQuick
import Quorl

// Stands in for all answers until the first has come.
Card {
    id: root

    required property AnswersReview review

    height: words.y + words.height + 24

    QuorlResponseLoader {
        id: loader

        x: 24
        y: 24
        width: root.width - 48
        markSize: 40
        modelName: root.review.awaited
    }
    Words {
        id: words

        x: 24
        y: loader.y + loader.height + 16
        width: root.width - 48
        text: qsTr("Responses will appear here without moving this workspace.")
        font: Theme.body
        color: Theme.quiet
        wrapMode: Text.Wrap
        lineHeight: Theme.bodyLine
        lineHeightMode: Text.FixedHeight
    }
}
