pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// A decision: what all models know, and the typed questions on it.
Column {
    id: root

    required property DraftScreen screen

    function focusQuestion(place: int) {
        const block = blocks.itemAt(Math.min(place, blocks.count - 1)) as QuestionBlock;
        if (block)
            block.focusQuestion();
    }

    spacing: Theme.betweenFields

    ContextField {
        width: root.width
        screen: root.screen
    }

    Repeater {
        id: blocks

        model: root.screen.questions
        delegate: QuestionBlock {
            id: block

            width: root.width
            onRemoved: {
                const place = block.index;
                root.screen.questions.removeQuestion(block.questionID);
                root.focusQuestion(place);
            }
        }
    }

    Connections {
        // The linter does not know that a list model is a QObject.
        target: root.screen.questions // qmllint disable type

        function onQuestionAdded(row: int) {
            root.focusQuestion(row);
        }
    }
}
