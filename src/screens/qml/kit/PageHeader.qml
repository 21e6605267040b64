import QtQuick
import Quorl

// The head of a screen. Its buttons stand at the right, or below where the title needs the room.
Item {
    id: root

    default property alias actions: buttons.data
    property string title
    property string subtitle

    readonly property bool isStacked: buttons.width > 0 && root.width < Math.min(heading.implicitWidth, 200) + 16 + buttons.width
    readonly property int wordsHeight: words.height

    implicitHeight: root.isStacked ? root.wordsHeight + 12 + buttons.height : Math.max(root.wordsHeight, buttons.y + buttons.height)

    Column {
        id: words

        width: root.width
        spacing: 4

        Text {
            id: heading

            width: root.isStacked || buttons.width === 0 ? parent.width : parent.width - buttons.width - 16
            text: root.title
            textFormat: Text.PlainText
            font: Theme.page
            color: Theme.text
            wrapMode: Text.Wrap
            lineHeight: Theme.pageLine
            lineHeightMode: Text.FixedHeight

            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Words {
            width: parent.width
            visible: root.subtitle !== ""
            text: root.subtitle
            font: Theme.body
            color: Theme.muted
            wrapMode: Text.Wrap
            lineHeight: Theme.bodyLine
            lineHeightMode: Text.FixedHeight
        }
    }

    Row {
        id: buttons

        x: root.isStacked ? 0 : root.width - width
        y: root.isStacked ? root.wordsHeight + 12 : (Theme.pageLine - Theme.controlHeight) / 2
        spacing: Theme.betweenButtons
    }
}
