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

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
        isOn: root.selected
    }
}
