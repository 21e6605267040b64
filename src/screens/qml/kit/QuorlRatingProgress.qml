import QtQuick
import Quorl

// How many of the answers have been rated.
Row {
    id: root

    property int completed
    property int total

    readonly property bool isComplete: root.completed === root.total

    spacing: 6

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1 of %2 responses rated").arg(root.completed).arg(root.total)

    Icon {
        symbol: root.isComplete ? Symbols.checkmarkCircleFill : Symbols.checkmarkCircle
        color: root.isComplete ? Theme.accent : Theme.quiet
    }

    Text {
        text: qsTr("%1 of %2 rated").arg(root.completed).arg(root.total)
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.quiet
        height: Theme.captionLine
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
