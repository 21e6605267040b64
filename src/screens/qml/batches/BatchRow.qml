import QtQuick
import Quorl

// A batch: its name, and under it what it is and how far it has come.
SelectionRow {
    id: root

    required property string batchName
    required property string kindTitle
    required property string runCount
    required property string status
    required property string progress
    required property string when
    required property bool isRunning
    required property string spoken

    readonly property color detailColor: root.isSelected ? Theme.text : Theme.quiet

    implicitHeight: 60
    leftPadding: 12
    rightPadding: 12
    text: root.spoken

    contentItem: Item {}

    Item {
        anchors { fill: parent; leftMargin: root.leftPadding; rightMargin: root.rightPadding }

        Text {
            y: 10
            width: parent.width - (progress.width > 0 ? progress.width + 12 : 0)
            height: Theme.controlLine
            text: root.batchName
            textFormat: Text.PlainText
            font { family: Theme.body.family; pixelSize: Theme.body.pixelSize; weight: Font.DemiBold }
            color: Theme.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        Text {
            id: progress

            x: parent.width - width
            y: 12
            text: root.progress
            textFormat: Text.PlainText
            font: Theme.caption
            color: root.detailColor
            Accessible.ignored: true
        }

        Text {
            id: kind

            y: 34
            text: root.kindTitle
            textFormat: Text.PlainText
            font: Theme.caption
            color: root.detailColor
            Accessible.ignored: true
        }

        Text {
            id: count

            x: Math.max(80, kind.width + 12)
            y: kind.y
            text: root.runCount
            textFormat: Text.PlainText
            font: Theme.caption
            color: root.detailColor
            Accessible.ignored: true
        }

        Text {
            x: count.x + Math.max(32, count.width + 12)
            y: kind.y
            width: Math.min(implicitWidth, age.x - x - 8)
            text: root.status
            textFormat: Text.PlainText
            font: root.isRunning ? Theme.label : Theme.caption
            color: root.isRunning ? (root.isSelected ? Theme.accentHover : Theme.accent) : root.detailColor
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        Text {
            id: age

            x: parent.width - width
            y: kind.y
            text: root.when
            textFormat: Text.PlainText
            font: Theme.caption
            color: root.detailColor
            Accessible.ignored: true
        }
    }
}
