import QtQuick
import Quorl

// What the toast says.
Panel {
    id: root

    function show(title: string, detail: string, symbol: string, isMilestone: bool) {
        heading.text = title;
        more.text = detail;
        icon.symbol = symbol;
        mark.animates = isMilestone;
    }

    shadow: "toast"
    implicitHeight: Math.max(mark.height, words.height) + 32
    height: implicitHeight

    QuorlMark {
        id: mark

        x: 16
        y: 14
        size: 40
    }

    Column {
        id: words

        x: 72
        y: 16
        width: root.width - x - 24

        Item {
            width: parent.width
            height: heading.height

            Icon {
                id: icon

                y: 2
                symbol: ""
                color: Theme.accent
            }

            Text {
                id: heading

                x: 22
                width: parent.width - x
                textFormat: Text.PlainText
                font: Theme.button
                color: Theme.text
                wrapMode: Text.Wrap
                lineHeight: Theme.controlLine
                lineHeightMode: Text.FixedHeight
                Accessible.ignored: true
            }
        }

        Text {
            id: more

            width: parent.width
            visible: text !== ""
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.muted
            wrapMode: Text.Wrap
            lineHeight: Theme.captionLine
            lineHeightMode: Text.FixedHeight
            Accessible.ignored: true
        }
    }
}
