pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The questions of the batch. They are read when they are asked for.
Menu {
    id: root

    required property AnswersReview review

    minimumWidth: 240
    width: Math.min(implicitWidth + 30, 440) // the mark's column comes when the width is known
    onAboutToShow: {
        entries.model = root.review.batchQuestions();
        root.prepare(); // with the size that it has now
    }

    Repeater {
        id: entries

        MenuEntry {
            required property string modelData
            required property int index

            text: modelData
            isCurrent: index === root.review.place
            onTriggered: root.review.jumpTo(index)
        }
    }
}
