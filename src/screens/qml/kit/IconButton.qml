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

    wantsHelp: root.hovered && !root.down && !root.isActive
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

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
        isOn: root.isActive
        radius: root.size < Theme.controlHeight ? Theme.smallRadius : Theme.controlRadius
    }
}
