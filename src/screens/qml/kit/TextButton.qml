import QtQuick
import Quorl

// A button of words alone. Whoever places it pulls it out by its padding, so that the words align.
BaseButton {
    id: root

    property color color: Theme.accent
    property string leadingSymbol
    property string trailingSymbol

    leftPadding: 8
    rightPadding: 8

    contentItem: ButtonLabel {
        text: root.text
        color: root.color
        leadingSymbol: root.leadingSymbol
        trailingSymbol: root.trailingSymbol
    }

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
    }
}
