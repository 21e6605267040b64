import QtQuick
import Quorl

// The answers of the comparison on show. Beside the composer head and foot stand still and the cards scroll; below it, all scrolls.
Item {
    id: root

    required property AnswersReview review
    required property int padding
    required property bool isStacked
    required property Item fields
    required property Item footer

    readonly property alias fieldsSlot: fieldsSlot
    readonly property alias footerSlot: footerSlot
    readonly property real innerWidth: root.width - 2 * root.padding
    readonly property real headPlace: content.y + stackedHead.y // when stacked
    readonly property bool hasRun: root.review.hasRun
    property bool isUsed: false // there has been something to review

    function scrollToHead() {
        scroll.scrollTo(root.headPlace);
    }

    onHasRunChanged: root.isUsed = root.isUsed || root.hasRun
    Component.onCompleted: root.isUsed = root.hasRun
    Keys.forwardTo: keys.item ? [keys.item] : []

    Item {
        id: fixedHead

        x: root.padding
        y: 28
        width: root.innerWidth
        height: root.isStacked ? 0 : head.height
    }

    ScrollPane {
        id: scroll

        y: root.isStacked ? 0 : fixedHead.y + fixedHead.height + (root.review.hasRun ? 16 : 8) - content.y
        width: root.width
        height: (root.isStacked || !root.review.hasRun ? root.height : fixedFoot.y) - y
        pixelAligned: true // a hairline between two pixels would not be drawn
        // Below the composer there is room enough for the head to go to the top, however little stands under it.
        contentHeight: Math.max(content.y + content.height + (root.isStacked ? root.padding : 16),
                                root.isStacked && root.review.hasRun ? root.headPlace + height : 0)

        Column {
            id: content

            x: root.padding
            y: !root.isStacked ? (root.review.isStepping ? 16 : 4) : root.width < 500 ? 16 : 28
            width: root.innerWidth

            Item {
                id: fieldsSlot

                visible: root.isStacked
                width: content.width
                height: root.fields.height + Theme.betweenFields
            }
            Item {
                id: footerSlot

                visible: root.isStacked
                width: content.width
                height: root.footer.height + Theme.betweenFields
            }
            Hairline {
                visible: root.isStacked
                x: -root.padding
                width: root.width
            }
            Item {
                id: stackedHead

                visible: root.isStacked
                width: content.width
                height: head.height + 32
            }
            AnswersBody {
                id: body

                width: content.width
                review: root.review
                pane: scroll
            }
            Item {
                id: stackedFoot

                visible: root.isStacked && root.review.hasRun
                width: content.width
                height: foot.height + 20
            }
        }
    }

    Item {
        id: fixedFoot

        x: root.padding
        y: root.height - foot.height - 32
        width: root.innerWidth
    }

    ReviewHead {
        id: head

        parent: root.isStacked ? stackedHead : fixedHead
        y: root.isStacked ? 16 : 0
        width: parent.width
        review: root.review
    }

    // What answers are judged with is read from its files when there are some.
    Loader {
        id: foot

        parent: root.isStacked ? stackedFoot : fixedFoot
        y: root.isStacked ? 20 : 0
        width: parent.width
        active: root.isUsed
        visible: root.review.hasRun
        Component.onCompleted: setSource(Qt.resolvedUrl("ReviewFoot.qml"), { review: root.review })
    }
    Loader {
        id: keys

        active: root.isUsed
        Component.onCompleted: setSource(Qt.resolvedUrl("ReviewKeys.qml"), { review: root.review, body: body })
    }
}
