import QtQuick
import Quorl

// One typed question: its text, the form of its answer, and what that form needs.
Column {
    id: root

    required property int index
    required property string questionID
    required property QuestionEditor editor

    signal removed

    function focusQuestion() {
        question.forceActiveFocus(Qt.OtherFocusReason);
        question.cursorPosition = question.length;
    }

    spacing: 20

    Item {
        width: root.width
        height: question.y + question.height

        FieldLabel {
            id: label

            text: root.index === 0 ? qsTr("Question") : qsTr("Additional question")
        }
        TextBox {
            id: question

            y: label.height + 4
            width: root.width
            line: Theme.questionLine
            font: Theme.question
            placeholderText: qsTr("What would you like to ask?")
            text: root.editor.instructions
            onTextChanged: root.editor.editInstructions(text)

            Accessible.name: label.text
        }
        IconButton {
            anchors { right: parent.right; rightMargin: -5; verticalCenter: label.verticalCenter }
            visible: root.index > 0
            size: Theme.smallHeight
            symbol: Symbols.minusCircle
            helpText: qsTr("Remove question")
            onClicked: root.removed()
        }
    }

    CriteriaEditor {
        width: root.width
        editor: root.editor
    }
}
