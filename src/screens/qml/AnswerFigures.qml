import QtQuick
import Quorl

// What an answer took.
Item {
    id: root

    required property string time
    required property string tokens
    required property string cost

    implicitHeight: figures.y + figures.implicitHeight

    Hairline {
        width: root.width
    }

    Flow {
        id: figures

        y: 13
        width: root.width
        spacing: 4

        Repeater {
            model: [root.time, root.tokens, root.cost]

            Words {
                required property string modelData

                visible: modelData !== ""
                rightPadding: 12
                text: modelData
                font: Theme.caption
                color: Theme.quiet
                height: Theme.captionLine
            }
        }
    }
}
