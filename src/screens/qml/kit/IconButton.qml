import QtQuick
import Quorl

// A button of one symbol, which its help text names.
BaseButton {
    id: root

    property string symbol
    property int size: Theme.controlHeight
    property int symbolSize: 18
    property bool isActive // what it opens is open
    property color color: root.isActive ? Theme.accent : Theme.quiet

    implicitWidth: root.size
    implicitHeight: root.size
    padding: 0

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: root.symbol
            size: root.symbolSize
            color: root.color
        }
    }

    background: Rectangle {
        radius: root.size < Theme.controlHeight ? Theme.smallRadius : Theme.controlRadius
        color: root.isActive ? Theme.select : root.down ? Theme.press : root.hovered ? Theme.hover : "transparent"

        FocusRing {
            around: parent.radius
            visible: root.visualFocus
        }
    }
}
