pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// A typed result with every probability behind it.
Column {
    id: root

    required property var result

    spacing: 4

    Hairline {
        width: root.width
    }
    Words {
        width: root.width
        topPadding: 8
        text: root.result.prompt
        font: Theme.button
        color: Theme.text
        wrapMode: Text.Wrap
    }
    Words {
        width: root.width
        visible: root.result.confidence !== ""
        text: root.result.confidence
        font: Theme.control
        color: Theme.quiet
        wrapMode: Text.Wrap
    }

    Repeater {
        model: root.result.signals

        Item {
            id: row

            required property var modelData

            width: root.width
            height: label.height

            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.label + " " + modelData.percent + "%"

            Text {
                id: label

                width: row.width - 56
                text: row.modelData.label
                textFormat: Text.PlainText
                font: Theme.control
                color: Theme.text
                wrapMode: Text.Wrap
                lineHeight: Theme.controlLine
                lineHeightMode: Text.FixedHeight
                Accessible.ignored: true
            }
            Text {
                anchors.right: row.right
                height: Theme.controlLine
                text: row.modelData.percent + "%"
                textFormat: Text.PlainText
                font: Theme.control
                color: Theme.text
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }
        }
    }
}
