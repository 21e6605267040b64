import QtQuick
import Quorl

// A question to language models.
Column {
    id: root

    required property DraftScreen screen

    function focusQuestion() {
        question.forceActiveFocus(Qt.OtherFocusReason);
    }

    spacing: Theme.betweenFields

    TextBox {
        id: question

        width: root.width
        minimumLines: 6
        line: Theme.promptLine
        font: Theme.prompt
        placeholderText: qsTr("What would you like to ask?")
        text: root.screen.prompt
        onTextChanged: root.screen.editPrompt(text)

        Accessible.name: qsTr("Question")
    }

    Column {
        width: root.width
        spacing: 4

        FieldLabel {
            id: label

            text: qsTr("System prompt")
        }
        TextBox {
            width: root.width
            placeholderText: qsTr("Optional instructions")
            text: root.screen.systemPrompt
            onTextChanged: root.screen.editSystemPrompt(text)

            Accessible.name: label.text
        }
    }
}
