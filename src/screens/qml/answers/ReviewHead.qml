import QtQuick
import Quorl

// What is on show, and of a batch the step through it.
Column {
    id: root

    required property AnswersReview review

    spacing: 12

    Item {
        width: root.width
        height: Theme.controlHeight

        PaneTitle {
            id: title

            text: qsTr("Answers")
        }

        Words {
            anchors { left: title.right; leftMargin: 10; baseline: title.baseline }
            visible: root.review.hasRun
            text: root.review.finishedCount
            font: Theme.caption
            color: Theme.quiet
        }

        TextButton {
            anchors { right: parent.right; rightMargin: -rightPadding }
            visible: root.review.hasRun
            text: qsTr("Reset")
            color: Theme.quiet
            leadingSymbol: Symbols.arrowCounterclockwise
            helpText: qsTr("Return to the question and hide the current answers. Your setup stays in place.")
            accessibleName: qsTr("Reset comparison")
            onClicked: root.review.reset()
        }
    }

    Loader {
        id: steps

        width: root.width
        active: root.review.isStepping
        visible: active
        Component.onCompleted: setSource(Qt.resolvedUrl("StepHeader.qml"), { review: root.review })
    }
}
