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

        Accessible.description: ""
    }

    QuorlRatingProgress {
        anchors { left: next.right; leftMargin: 16; verticalCenter: next.verticalCenter }
        completed: root.review.rated
        total: root.review.total
    }
}
