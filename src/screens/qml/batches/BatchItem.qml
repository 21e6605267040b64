import QtQuick
import QtQuick.Templates as T
import Quorl

// One item of a batch. The whole row opens it.
T.Button {
    id: root

    required property int index
    required property string prompt
    required property string category
    required property string modelCount
    required property string runningStatus
    required property string failed
    required property string spoken

    implicitHeight: details.y + details.height + 16
    hoverEnabled: true
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.spoken
    Accessible.description: open.text
    Accessible.onPressAction: root.clicked()

    contentItem: Item {}

    background: Rectangle {
        x: -16
        width: root.width + 32
        radius: Theme.controlRadius
        color: root.hovered || root.down ? Theme.raised : "transparent"

        Hairline {
            x: 16
            y: parent.height - 1
            width: root.width
            visible: !root.hovered
        }

        FocusRing {
            anchors.margins: 2
            around: Theme.controlRadius - 4
            visible: root.visualFocus
        }
    }

    Text {
        id: question

        y: 14
        width: open.x - 16
        text: root.prompt
        textFormat: Text.PlainText
        font { family: Theme.body.family; pixelSize: Theme.body.pixelSize; weight: Font.DemiBold }
        color: Theme.text
        elide: Text.ElideRight
        maximumLineCount: 1
        Accessible.ignored: true
    }

    Flow {
        id: details

        y: question.y + 22
        width: open.x - 16
        spacing: 12

        Text {
            width: Math.max(Math.min(156, details.width / 2), Math.min(implicitWidth, details.width - 180))
            text: root.category
            elide: Text.ElideRight
            height: Theme.captionLine
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.quiet
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        Text {
            width: Math.max(implicitWidth, 76)
            text: root.modelCount
            height: Theme.captionLine
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.quiet
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        Text {
            visible: text !== ""
            text: root.runningStatus
            height: Theme.captionLine
            textFormat: Text.PlainText
            font: Theme.label
            color: Theme.accent
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        Text {
            visible: text !== ""
            text: root.failed
            height: Theme.captionLine
            textFormat: Text.PlainText
            font: Theme.label
            color: Theme.danger
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    Text {
        id: open

        x: root.width - width
        y: (root.height - height) / 2
        text: qsTr("Open")
        textFormat: Text.PlainText
        font: Theme.button
        color: root.hovered ? Theme.accentHover : Theme.accent
        Accessible.ignored: true
    }
}
