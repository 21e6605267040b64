import QtQuick
import Quorl

// The one main action of a view.
BaseButton {
    id: root

    property string symbol // after the word
    property bool isDestructive

    implicitHeight: Theme.primaryHeight
    leftPadding: 16
    rightPadding: 16

    contentItem: ButtonLabel {
        text: root.text
        color: Theme.surface
        trailingSymbol: root.symbol
    }

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
        rest: root.isDestructive ? Theme.danger : Theme.accent
        lit: root.isDestructive ? Qt.tint(Theme.danger, Qt.alpha(Theme.text, 0.16)) : Theme.accentHover
        pressed: lit
    }
}
