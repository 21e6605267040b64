import QtQuick
import Quorl

// The form of a question's answer, and what that form needs.
Column {
    id: root

    required property QuestionEditor editor

    spacing: 8

    AnswerFormatSelector {
        width: root.width
        type: root.editor.type
        onChosen: type => root.editor.setType(type)
    }

    Loader {
        width: root.width
        sourceComponent: root.editor.type === QuestionEditor.Choice ? choice
                       : root.editor.type === QuestionEditor.Score ? score : yesNo
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: choice

        ChoiceEditor {
            editor: root.editor
        }
    }
    Component {
        id: score

        ScoreScaleEditor {
            editor: root.editor
        }
    }
    Component {
        id: yesNo

        YesNoEditor {
            editor: root.editor
        }
    }
}
