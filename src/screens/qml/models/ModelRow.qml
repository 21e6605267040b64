import QtQuick
import Quorl

// A model: whether it can be asked, its name, and the way it is reached.
SelectionRow {
    id: root

    required property string modelName
    required property string way
    required property string readiness
    required property string obstacle

    implicitHeight: Theme.listRowHeight
    text: root.modelName

    Accessible.description: root.way

    contentItem: Item {
        StatusDot {
            x: 12
            y: 14
            state: root.readiness
            helpText: root.obstacle
        }

        Text {
            x: 32
            y: 7
            width: parent.width - x - 12
            height: 22
            text: root.modelName
            textFormat: Text.PlainText
            font { family: Theme.body.family; pixelSize: Theme.body.pixelSize; weight: Font.DemiBold }
            color: Theme.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        Text {
            x: 32
            y: 30
            width: parent.width - x - 12
            height: Theme.captionLine
            text: root.way
            textFormat: Text.PlainText
            font: Theme.caption
            color: root.isSelected ? Theme.text : Theme.quiet
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
