import QtQuick
import Quorl

// One of three: the invitation, the loader while nobody has answered, the cards.
Item {
    id: root

    required property DraftScreen screen
    required property ScrollPane pane

    height: shown.height

    Loader {
        id: shown

        width: root.width
        sourceComponent: !root.screen.hasRun ? invitation : root.screen.allRunning ? waiting : cards
    }

    Component {
        id: invitation

        AnswersPlaceholder {}
    }
    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: waiting

        Card {
            height: loader.height + 40

            ResponseLoader {
                id: loader

                x: 20
                y: 20
                width: parent.width - 40
                modelName: root.screen.awaited
                detail: qsTr("Responses will appear here without moving this workspace.")
            }
        }
    }
    Component {
        id: cards

        AnswerGrid {
            answers: root.screen.answers
            pane: root.pane
            onRetryRequested: answerID => root.screen.retry(answerID)
        }
    }
}
