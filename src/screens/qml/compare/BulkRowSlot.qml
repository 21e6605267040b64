import QtQuick
import Quorl

// The place of a row of the bulk list, and its row as soon as that is made.
Item {
    id: root

    required property int index
    required property string bulkID
    required property string questionText
    required property BulkQuestionListModel questions
    required property BulkMenu menu

    function focusField() {
        row.asynchronous = false;
        (row.item as BulkRow).focusField();
    }

    height: Theme.rowHeight

    Loader {
        id: row

        width: root.width
        asynchronous: root.index >= 20
        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: BulkRow {
            bulkID: root.bulkID
            number: root.index + 1
            text: root.questionText
            menu: root.menu
            onEdited: text => root.questions.edit(root.bulkID, text)
            onReturnPressed: root.questions.advance(root.bulkID)
        }
    }
}
