import QtQuick
import Quorl

// What is wrong, in a line.
Item {
    id: root

    required property string text

    implicitHeight: words.height
    height: implicitHeight

    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.text

    Icon {
        y: (Theme.controlLine - height) / 2
        symbol: Symbols.exclamationmarkCircle
        color: Theme.danger
    }

    Text {
        id: words

        x: 24
        width: root.width - x
        text: root.text
        textFormat: Text.PlainText
        font: Theme.control
        color: Theme.danger
        wrapMode: Text.Wrap
        lineHeight: Theme.controlLine
        lineHeightMode: Text.FixedHeight
        Accessible.ignored: true
    }
}
