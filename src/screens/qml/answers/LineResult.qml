import QtQuick
import Quorl

// One typed answer with its judgement at the right of the same line, so that the cards are read down like a column.
Item {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools

    implicitHeight: answer.y + answer.height + 17

    ResultText {
        id: answer

        y: 7
        width: judgement.x - 16
        result: root.card.results[0]
    }

    Judgement {
        id: judgement

        anchors { right: rule.left; rightMargin: 12 }
        y: answer.y + 14 - height / 2
        card: root.card
        tools: root.tools
    }

    Rectangle {
        id: rule

        anchors { right: save.left; rightMargin: 12 - save.leftPadding; verticalCenter: judgement.verticalCenter }
        width: 1
        height: 16
        color: Theme.line
    }

    BookmarkButton {
        id: save

        anchors { right: root.right; rightMargin: -rightPadding; verticalCenter: judgement.verticalCenter }
        saved: root.card.isSaved
        onClicked: root.card.saveToDataset()
    }
}
