pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The levels of a score, from lowest to highest.
Column {
    id: root

    required property QuestionEditor editor

    function focusLevel(place: int) {
        const level = levels.itemAt(Math.min(place, levels.count - 1)) as ScoreLevelField;
        if (level)
            level.focusField();
    }

    function add() {
        root.editor.addLevel();
        root.focusLevel(levels.count - 1);
    }

    ScoreScaleHeader {
        width: root.width
        onNumbersChosen: highest => root.editor.useNumbers(highest)
    }

    Repeater {
        id: levels

        model: root.editor.levels
        delegate: ScoreLevelField {
            id: level

            width: root.width
            count: levels.count
            canRemove: root.editor.canRemoveLevel
            onEdited: text => root.editor.editLevel(level.levelID, text)
            onReturnPressed: {
                if (level.index < levels.count - 1)
                    root.focusLevel(level.index + 1);
                else if (root.editor.canAddLevel)
                    root.add();
            }
            onRemoved: {
                const place = level.index;
                root.editor.removeLevel(level.levelID);
                root.focusLevel(place);
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
            text: qsTr("Add level")
            leadingSymbol: Symbols.plus
            helpText: root.editor.canAddLevel ? "" : qsTr("A score can use up to ten ordered levels")
            enabled: root.editor.canAddLevel
            onClicked: root.add()
        }
    }
}
