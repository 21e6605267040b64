pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The cards, side by side as long as each has the width to be read. A card is filled when it first comes near to being seen.
Grid {
    id: root

    required property AnswerListModel answers
    required property ScrollPane pane

    readonly property int fitting: Math.max(1, Math.floor((root.width + root.spacing) / (340 + root.spacing)))
    readonly property real cardWidth: Math.min(720, (root.width + root.spacing) / root.columns - root.spacing)

    signal retryRequested(string answerID)

    columns: Math.max(1, Math.min(root.fitting, cards.count))
    spacing: Theme.betweenCards

    Repeater {
        id: cards

        model: root.answers
        delegate: AnswerCard {
            id: card

            width: root.cardWidth
            // The pane's content starts a little above the grid, which the margin swallows.
            isNear: card.y < root.pane.contentY + 2 * root.pane.height + 1000
            onRetryRequested: root.retryRequested(card.answerID)
        }
    }
}
