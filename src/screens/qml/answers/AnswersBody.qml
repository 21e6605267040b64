import QtQuick
import Quorl

// The invitation, or what has been answered. Either is read from its file when it is first shown: a window opens on the
// invitation, and all that answers are judged with can wait.
Item {
    id: root

    required property AnswersReview review
    required property ScrollPane pane

    readonly property bool hasRun: root.review.hasRun
    readonly property Item shown: loader.item as Item

    function show() {
        if (root.hasRun)
            loader.setSource(Qt.resolvedUrl("ReviewedAnswers.qml"), { review: root.review, pane: root.pane });
        else
            loader.setSource(Qt.resolvedUrl("NoAnswers.qml"));
    }

    height: loader.height
    onHasRunChanged: root.show()
    Component.onCompleted: root.show()

    Loader {
        id: loader

        width: root.width
    }
}
