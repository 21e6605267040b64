import QtQuick
import Quorl

// The judgements under a hairline, as the foot of a card.
Item {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools

    height: row.y + row.height + 8

    Hairline {
        width: root.width
    }

    Judgement {
        id: row

        x: root.card.isRated1To10 ? 0 : -5 // so that the thumb is aligned
        y: 9
        card: root.card
        tools: root.tools
    }

    BookmarkButton {
        anchors { right: root.right; rightMargin: -rightPadding; verticalCenter: row.verticalCenter }
        saved: root.card.isSaved
        onClicked: root.card.saveToDataset()
    }
}
