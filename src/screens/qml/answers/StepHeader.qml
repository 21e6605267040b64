import QtQuick
import Quorl

// Which question of a batch is on show, and the way to the others.
Item {
    id: root

    required property AnswersReview review

    height: end.y + end.height

    Hairline {
        width: root.width
    }

    // Of all questions, so that it can be told by a glance from the first of them; the words stand where there is room.
    Rectangle {
        width: root.width * root.review.batchShare
        height: 2
        visible: root.review.batchProgress !== ""
        color: Theme.accent

        Accessible.role: Accessible.ProgressBar
        Accessible.name: root.review.batchProgress
    }

    Words {
        id: step

        anchors { left: root.left; verticalCenter: row.verticalCenter }
        width: Math.min(implicitWidth, jump.x - 8)
        text: root.review.stepLabel
        font: Theme.button
        color: Theme.text
        elide: Text.ElideRight
    }
    Words {
        anchors { left: step.right; leftMargin: 12; baseline: step.baseline }
        visible: x + implicitWidth < jump.x - 8
        text: root.review.batchProgress
        font: Theme.caption
        color: Theme.quiet
        Accessible.ignored: true // the bar says it
    }

    MenuButton {
        id: jump

        anchors { right: row.left; rightMargin: 4; verticalCenter: row.verticalCenter }
        text: qsTr("Jump to question")
        look: MenuButton.Look.Text
        color: Theme.quiet
        chevron: true
        alignRight: true
        menu: JumpMenu {
            review: root.review
        }
    }

    Row {
        id: row

        x: root.width - width + 8 // so that the arrow is aligned
        y: 6
        spacing: 4

        IconButton {
            symbol: Symbols.chevronLeft
            accessibleName: qsTr("Previous question")
            helpText: qsTr("%1\nKey: H").arg(accessibleName)
            enabled: root.review.canStepBack
            onClicked: root.review.stepBack()
        }
        IconButton {
            symbol: Symbols.chevronRight
            helpText: qsTr("Next question")
            enabled: root.review.canStepOn
            onClicked: root.review.stepOn()
        }
    }

    LongText {
        id: question

        y: row.y + row.height + 2
        width: Math.min(root.width, 720) // or the way back to the next line's start is too long
        height: Math.min(fullHeight, 5 * Theme.bodyLine)
        text: root.review.question
    }

    Hairline {
        id: end

        y: question.y + question.height + 9
        width: root.width
    }
}
