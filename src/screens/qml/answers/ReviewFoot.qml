import QtQuick
import Quorl

// How many answers are rated, and the way on.
Item {
    id: root

    required property AnswersReview review

    height: next.y + next.height

    Hairline {
        width: root.width
    }

    SecondaryButton {
        id: next

        y: 17
        isLarge: true
        text: root.review.nextLabel
        symbol: Symbols.arrowRight
        symbolAtEnd: true
        helpText: qsTr("Key: L")
        onClicked: root.review.next()
    }

    Item {
        anchors { left: next.right; leftMargin: 16; verticalCenter: next.verticalCenter }
        width: progress.width
        height: progress.height

        QuorlRatingProgress {
            id: progress

            completed: root.review.rated
            total: root.review.total
        }
        HoverHandler {
            id: pointer
        }
        HelpText {
            text: qsTr("Keys: J and K for the next and the previous answer")
            wanted: pointer.hovered
        }
    }
}
