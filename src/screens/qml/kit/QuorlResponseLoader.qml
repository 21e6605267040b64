import QtQuick
import Quorl

// Stands in for an answer that is under way.
Item {
    id: root

    property string modelName
    property bool compact
    property int markSize: root.compact ? 20 : 32

    implicitWidth: mark.width + 16 + Math.max(name.implicitWidth, more.implicitWidth)
    implicitHeight: Math.max(mark.height, words.height)

    Accessible.role: Accessible.ProgressBar
    Accessible.name: root.compact ? qsTr("Collecting model responses") : qsTr("Waiting for a response from %1").arg(root.modelName)

    QuorlMark {
        id: mark

        anchors.verticalCenter: parent.verticalCenter
        size: root.markSize
        animates: true
    }

    Column {
        id: words

        anchors { left: mark.right; leftMargin: root.compact ? 8 : 16; right: parent.right; verticalCenter: parent.verticalCenter }

        Text {
            id: name

            width: parent.width
            visible: !root.compact
            text: qsTr("Checking %1").arg(root.modelName)
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            wrapMode: Text.Wrap
            lineHeight: Theme.bodyLine
            lineHeightMode: Text.FixedHeight
            Accessible.ignored: true
        }
        Text {
            id: more

            width: parent.width
            text: root.compact ? qsTr("Collecting") : qsTr("Comparing this response")
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.muted
            elide: Text.ElideRight
            lineHeight: Theme.captionLine
            lineHeightMode: Text.FixedHeight
            Accessible.ignored: true
        }
    }
}
