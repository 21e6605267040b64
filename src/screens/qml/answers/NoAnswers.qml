import QtQuick
import Quorl

Column {
    spacing: Theme.betweenCards

    Words {
        width: parent.width
        bottomPadding: 12
        text: qsTr("Your model responses will appear here.")
        font: Theme.body
        color: Theme.quiet
        wrapMode: Text.Wrap
        lineHeight: Theme.bodyLine
        lineHeightMode: Text.FixedHeight
    }

    Repeater {
        model: 3

        Rectangle {
            required property int index

            width: parent.width
            height: 92
            radius: Theme.cardRadius
            color: "transparent"
            border.color: Theme.line
            opacity: 1 - index * 0.35
        }
    }
}
