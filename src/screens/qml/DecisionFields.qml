pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// A decision: what all models know, and the typed questions on it.
Column {
    id: root

    required property DraftScreen screen

    function focusQuestion() {
        (blocks.itemAt(0) as QuestionBlock).focusQuestion();
    }

    spacing: Theme.betweenFields

    Column {
        width: root.width
        spacing: 4

        FieldLabel {
            id: label

            text: qsTr("Context")
        }
        TextBox {
            width: root.width
            minimumLines: 3
            placeholderText: qsTr("What should the models know?")
            text: root.screen.prompt
            onTextChanged: root.screen.editPrompt(text)

            Accessible.name: label.text
        }
    }

    Repeater {
        id: blocks

        model: root.screen.questions
        delegate: QuestionBlock {
            width: root.width
            questions: root.screen.questions
        }
    }

    TextButton {
        x: -leftPadding
        text: qsTr("Add another question")
        leadingSymbol: Symbols.plus
        onClicked: root.screen.questions.addQuestion()
    }
}
