import QtQuick
import Quorl

// A list of questions that share their context and the form of their answers.
Column {
    id: root

    required property DraftScreen screen

    function focusQuestion(place: int) {
        list.focusQuestion(place);
    }

    spacing: 16

    ContextField {
        width: root.width
        height: implicitHeight + 8
        screen: root.screen
    }
    CriteriaEditor {
        width: root.width
        editor: root.screen.bulkTemplate
    }
    BulkQuestionList {
        id: list

        width: root.width
        questions: root.screen.bulkQuestions
        onPasteRequested: root.screen.pasted.open()
    }
    Loader {
        active: root.screen.pasted.isOpen
        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: PasteSheet {
            pasted: root.screen.pasted
            Component.onCompleted: open()
        }
    }
}
