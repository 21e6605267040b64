import QtQuick
import Quorl

// The answers of the comparison on show. Beside the composer the head stands still and the cards scroll; below it, all scrolls.
Item {
    id: root

    required property DraftScreen screen
    required property int padding
    required property bool isStacked
    required property Item fields
    required property Item footer

    readonly property alias fieldsSlot: fieldsSlot
    readonly property alias footerSlot: footerSlot
    readonly property real innerWidth: root.width - 2 * root.padding
    readonly property real headPlace: content.y + stackedHead.y // when stacked

    function scrollToHead() {
        scroll.scrollTo(root.headPlace);
    }

    Item {
        id: fixedHead

        x: root.padding
        y: 28
        width: root.innerWidth
        height: root.isStacked ? 0 : head.height
    }

    ScrollPane {
        id: scroll

        y: root.isStacked ? 0 : 72
        width: root.width
        height: root.height - y
        // Below the composer there is room enough for the head to go to the top, however little stands under it.
        contentHeight: Math.max(content.y + content.height + root.padding,
                                root.isStacked && root.screen.hasRun ? root.headPlace + height : 0)

        Column {
            id: content

            x: root.padding
            y: root.isStacked ? 20 : 4
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
                height: head.height + 36
            }
            Answers {
                width: content.width
                screen: root.screen
                pane: scroll
            }
        }
    }

    AnswersHead {
        id: head

        parent: root.isStacked ? stackedHead : fixedHead
        y: root.isStacked ? 20 : 0
        width: parent.width
        screen: root.screen
    }
}
