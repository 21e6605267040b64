import QtQuick
import Quorl

// One typed question: its text, the form of its answer, and what that form needs.
Column {
    id: root

    required property QuestionListModel questions
    required property int index
    required property string questionID
    required property int questionType
    required property string instructions
    required property list<string> optionIDs
    required property list<string> optionLabels
    required property list<string> levels
    required property bool canAddLevel
    required property string yesMeans
    required property string noMeans

    function focusQuestion() {
        question.forceActiveFocus(Qt.OtherFocusReason);
    }

    spacing: 12

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
            placeholderText: qsTr("What would you like to ask?")
            text: root.instructions
            onTextChanged: root.questions.editInstructions(root.questionID, text)

            Accessible.name: label.text
        }
        TextButton {
            anchors { right: parent.right; rightMargin: -rightPadding; verticalCenter: label.verticalCenter }
            visible: root.index > 0
            color: Theme.quiet
            leadingSymbol: Symbols.minusCircle
            helpText: qsTr("Remove question")
            onClicked: root.questions.removeQuestion(root.questionID)

            Accessible.name: helpText
        }
    }

    AnswerFormat {
        width: root.width
        type: root.questionType
        onChosen: type => root.questions.setType(root.questionID, type)
    }

    Loader {
        width: root.width
        sourceComponent: root.questionType === QuestionListModel.Choice ? choice
                       : root.questionType === QuestionListModel.Score ? score : yesNo
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: choice

        ChoiceFields {
            labels: root.optionLabels
            onEdited: (place, text) => root.questions.editOption(root.questionID, root.optionIDs[place], text)
            onAddRequested: root.questions.addOption(root.questionID)
        }
    }
    Component {
        id: score

        ScoreFields {
            levels: root.levels
            canAdd: root.canAddLevel
            onEdited: (place, text) => root.questions.editLevel(root.questionID, place, text)
            onAddRequested: root.questions.addLevel(root.questionID)
        }
    }
    Component {
        id: yesNo

        YesNoFields {
            yesMeans: root.yesMeans
            noMeans: root.noMeans
            onYesEdited: text => root.questions.editYesMeans(root.questionID, text)
            onNoEdited: text => root.questions.editNoMeans(root.questionID, text)
        }
    }
}
