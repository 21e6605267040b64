import QtQuick
import Quorl

// A list beside the detail of what is selected in it, each with its own scroll. Where that is too narrow the list stands above
// the detail, in one scroll with it.
Item {
    id: root

    property alias list: listSlot.data
    property alias detail: detailSlot.data
    required property real listHeight // above the detail
    required property real detailHeight
    property real detailWidth: 640

    readonly property bool isStacked: root.width < 720
    readonly property int padding: root.width < 500 ? 20 : 32
    readonly property int detailPadding: root.isStacked ? root.padding : 40

    Item {
        id: beside

        x: root.padding
        y: 28
        width: edge.x - x - 20
        height: root.height - y
    }

    Rectangle {
        id: edge

        visible: !root.isStacked
        x: 311
        width: 1
        height: root.height
        color: Theme.line
    }

    ScrollPane {
        id: scroll

        x: root.isStacked ? 0 : edge.x + edge.width
        width: root.width - x
        height: root.height
        contentHeight: detailSlot.y + root.detailHeight + 32

        Item {
            id: above

            x: root.padding
            y: 28
            width: scroll.width - 2 * x
            height: root.listHeight
        }

        Hairline {
            id: rule

            visible: root.isStacked
            y: above.y + above.height + 20
            width: scroll.width
        }

        Item {
            id: detailSlot

            x: root.detailPadding
            y: root.isStacked ? rule.y + 29 : 28
            width: Math.min(scroll.width - 2 * x, root.detailWidth)
            height: root.detailHeight
        }
    }

    Item {
        id: listSlot

        parent: root.isStacked ? above : beside
        anchors.fill: parent
    }
}
