import QtQuick
import Quorl

// A destination in the toolbar of a narrow window.
TabButton {
    id: root

    property string symbol

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    padding: 0
    helpText: root.title

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: root.symbol
            size: 18
            color: root.selected ? Theme.accent : Theme.quiet
        }
    }

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
        isOn: root.selected
    }
}
