import QtQuick
import Quorl

// One loader for all while nobody has answered, then the cards.
Item {
    id: root

    required property AnswersReview review
    required property ScrollPane pane

    readonly property AnswerCards cards: shown.item as AnswerCards

    height: shown.height

    Loader {
        id: shown

        width: root.width
        sourceComponent: root.review.isWaiting ? waiting : cards
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: waiting

        AwaitedAnswers {
            review: root.review
        }
    }
    Component {
        id: cards

        AnswerCards {
            answers: root.review.cards
            tools: shared
            pane: root.pane
        }
    }

    AnswerTools {
        id: shared

        cards: root.review.cards
    }
}
