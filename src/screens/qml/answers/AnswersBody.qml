import QtQuick
import Quorl

// One of three: the invitation, the loader while nobody has answered, the cards.
Item {
    id: root

    required property AnswersReview review
    required property AnswerTools tools
    required property ScrollPane pane

    readonly property AnswerCards cards: shown.item as AnswerCards

    height: shown.height

    Loader {
        id: shown

        width: root.width
        sourceComponent: !root.review.hasRun ? invitation : root.review.isWaiting ? waiting : cards
    }

    Component {
        id: invitation

        NoAnswers {}
    }
    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: waiting

        Card {
            height: words.y + words.height + 24

            QuorlResponseLoader {
                id: loader

                x: 24
                y: 24
                width: parent.width - 48
                markSize: 40
                modelName: root.review.awaited
            }
            Words {
                id: words

                x: 24
                y: loader.y + loader.height + 16
                width: parent.width - 48
                text: qsTr("Responses will appear here without moving this workspace.")
                font: Theme.body
                color: Theme.quiet
                wrapMode: Text.Wrap
                lineHeight: Theme.bodyLine
                lineHeightMode: Text.FixedHeight
            }
        }
    }
    Component {
        id: cards

        AnswerCards {
            answers: root.review.cards
            tools: root.tools
            pane: root.pane
        }
    }
}
