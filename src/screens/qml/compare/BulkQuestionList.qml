pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The questions of a bulk list. The rows that cannot be seen at first are filled when the program has nothing else to do.
Column {
    id: root

    required property BulkQuestionListModel questions

    signal pasteRequested

    function focusQuestion(place: int) {
        const slot = rows.itemAt(Math.min(place, rows.count - 1)) as BulkRowSlot;
        if (slot)
            slot.focusField();
        else
            add.forceActiveFocus(Qt.OtherFocusReason);
    }

    BulkListHeader {
        width: root.width
        count: root.questions.count
        onPasteRequested: root.pasteRequested()
    }

    Repeater {
        id: rows

        model: root.questions
        delegate: BulkRowSlot {
            width: root.width
            questions: root.questions
            menu: rowMenu
        }
    }

    Item {
        width: root.width
        height: add.y + add.height

        TextButton {
            id: add

            x: -7
            y: 6
            text: qsTr("Add question")
            leadingSymbol: Symbols.plus
            enabled: root.questions.canAdd
            onClicked: root.questions.add()
        }
    }

    BulkMenu {
        id: rowMenu

        questions: root.questions
        onRemoved: place => root.focusQuestion(place)
    }

    Connections {
        // The linter does not know that a list model is a QObject.
        target: root.questions // qmllint disable type

        function onRowsAboutToBeRemoved() {
            rowMenu.close(); // as long as its button is there to take the keyboard back
        }
        function onCaretRequested(row: int) {
            root.focusQuestion(row);
        }
    }
}
