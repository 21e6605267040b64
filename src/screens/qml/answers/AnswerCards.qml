pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The cards, side by side as long as each has the width to be read; short decisions one under the other, to be read down.
// A card is filled when it first comes near to being seen.
Grid {
    id: root

    required property AnswerCardListModel answers
    required property AnswerTools tools
    required property ScrollPane pane

    readonly property int fitting: root.answers.isReadDown ? (root.width < 1000 ? 1 : 2)
                                                           : Math.max(1, Math.floor((root.width + root.spacing) / (340 + root.spacing)))
    readonly property real cardWidth: Math.min(720, (root.width + root.spacing) / root.columns - root.spacing)

    property JudgedAnswer current // which has the keyboard

    function focusRow(row: int) {
        const card = repeater.itemAt(Math.max(0, Math.min(row, repeater.count - 1))) as JudgedAnswer;
        if (card)
            card.takeKeyboard();
    }

    Component.onDestruction: root.tools.closeAll()
    columns: Math.max(1, Math.min(root.fitting, repeater.count))
    spacing: Theme.betweenCards

    Repeater {
        id: repeater

        model: root.answers
        onItemRemoved: root.tools.closeAll()
        delegate: JudgedAnswer {
            id: item

            readonly property bool isPlaced: item.y > 0 || item.index < root.columns // at first all lie at the top

            width: root.cardWidth
            tools: root.tools
            pane: root.pane
            // The pane's content starts above the grid, which makes it a little nearer than it is.
            isNear: item.isPlaced && item.y < root.pane.contentY + 1.5 * root.pane.height + 200
            onActiveFocusChanged: {
                if (item.activeFocus)
                    root.current = item;
                else if (root.current === item)
                    root.current = null;
            }
        }
    }
}
