pragma ComponentBehavior: Bound

import QtQuick
import Quorl

Menu {
    id: root

    readonly property CardMenuButton button: root.parent as CardMenuButton
    readonly property AnswerCardModel card: root.button ? root.button.card : null

    minimumWidth: 136

    Repeater {
        model: 10

        MenuEntry {
            required property int index

            text: index + 1
            isFigure: true
            isCurrent: root.card !== null && root.card.rating === index + 1
            onTriggered: root.card.rate(index + 1)
        }
    }

    MenuDivider {}
    MenuEntry {
        text: qsTr("Clear rating")
        onTriggered: root.card.clearRating()
    }
}
