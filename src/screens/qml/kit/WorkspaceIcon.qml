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

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.selected ? Theme.select : root.down ? Theme.press : root.hovered ? Theme.hover : "transparent"

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
