pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The options of a choice.
Column {
    id: root

    required property QuestionEditor editor

    function focusChoice(place: int) {
        const choice = choices.itemAt(Math.min(place, choices.count - 1)) as ChoiceField;
        if (choice)
            choice.focusField();
    }

    function add() {
        root.editor.addOption();
        root.focusChoice(choices.count - 1);
    }

    Repeater {
        id: choices

        model: root.editor.options
        delegate: ChoiceField {
            id: choice

            width: root.width
            canRemove: root.editor.canRemoveOption
            onEdited: text => root.editor.editOption(choice.optionID, text)
            onDetailEdited: text => root.editor.editOptionDetail(choice.optionID, text)
            onReturnPressed: {
                if (choice.index === choices.count - 1)
                    root.add();
                else
                    root.focusChoice(choice.index + 1);
            }
            onRemoved: {
                const place = choice.index;
                root.editor.removeOption(choice.optionID);
                root.focusChoice(place);
            }
        }
    }

    Item {
        width: root.width
        height: add.y + add.height

        TextButton {
            id: add

            x: -7
            y: 6
            text: qsTr("Add choice")
            leadingSymbol: Symbols.plus
            onClicked: root.add()
        }
    }
}
