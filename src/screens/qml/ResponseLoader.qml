import QtQuick
import Quorl

// Stands in for an answer that is under way.
Item {
    id: root

    required property string modelName
    property string detail

    implicitHeight: more.visible ? more.y + more.height : mark.height

    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Waiting for a response from %1").arg(root.modelName)

    Image {
        id: mark

        width: 40
        height: 40
        source: "../icons/mark-64.png"
        smooth: true
    }

    Column {
        id: words

        anchors { left: mark.right; leftMargin: 16; right: parent.right; verticalCenter: mark.verticalCenter }

        Text {
            width: parent.width
            text: qsTr("Checking %1").arg(root.modelName)
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            height: Theme.bodyLine
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Text {
            width: parent.width
            text: qsTr("Comparing this response")
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.muted
            height: Theme.captionLine
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    Words {
        id: more

        y: mark.height + 16
        width: root.width
        visible: root.detail !== ""
        text: root.detail
        font: Theme.body
        color: Theme.quiet
        wrapMode: Text.Wrap
        lineHeight: Theme.bodyLine
        lineHeightMode: Text.FixedHeight
    }
}
