import QtQuick
import Quorl

// What a list shows while it has nothing to show.
Card {
    id: root

    property string title
    property string message
    property string symbol

    implicitHeight: words.height + 2 * 18

    Column {
        id: words

        x: 18
        y: 18
        width: root.width - 36

        Icon {
            visible: root.symbol !== ""
            symbol: root.symbol
            size: 24
        }

        Item {
            width: 1
            height: root.symbol !== "" ? 16 : 0
        }

        Words {
            width: parent.width
            text: root.title
            font: Theme.pane
            color: Theme.text
            wrapMode: Text.Wrap
            lineHeight: Theme.paneLine
            lineHeightMode: Text.FixedHeight
        }

        Words {
            width: parent.width
            visible: root.message !== ""
            topPadding: 4
            text: root.message
            font: Theme.body
            color: Theme.muted
            wrapMode: Text.Wrap
            lineHeight: Theme.bodyLine
            lineHeightMode: Text.FixedHeight
        }
    }
}
