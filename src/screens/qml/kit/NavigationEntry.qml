import QtQuick
import Quorl

// A destination in the rail.
TabButton {
    id: root

    property string symbol

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.primaryHeight
    leftPadding: 12
    rightPadding: 12

    contentItem: ButtonLabel {
        text: root.text
        font: Theme.navigation
        color: Theme.text
        leadingSymbol: root.symbol
        symbolColor: root.selected ? Theme.accent : Theme.quiet
        symbolSize: 18
        gap: 12
        isSpread: true
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
