import QtQuick
import Quorl

// The composer beside the answers. Its footer follows the fields, until they are higher than the pane.
Item {
    id: root

    required property int padding
    required property Item fields
    required property Item footer

    readonly property alias fieldsSlot: fieldsSlot
    readonly property alias footerSlot: footerSlot
    readonly property bool isFull: scroll.contentHeight + root.footer.height + root.padding > root.height

    ScrollPane {
        id: scroll

        width: root.width
        height: Math.min(contentHeight, root.height - footerArea.height)
        contentHeight: fieldsSlot.y + fieldsSlot.height + Theme.betweenFields

        Item {
            id: fieldsSlot

            x: root.padding
            y: 28
            width: root.width - 2 * root.padding
            height: root.fields.height
        }
    }

    Item {
        id: footerArea

        y: scroll.height
        width: root.width
        height: footerSlot.y + root.footer.height + root.padding

        Hairline {
            visible: root.isFull
            width: root.width
        }

        Item {
            id: footerSlot

            x: root.padding
            y: root.isFull ? 17 : 0
            width: root.width - 2 * root.padding
            height: root.footer.height
        }
    }
}
