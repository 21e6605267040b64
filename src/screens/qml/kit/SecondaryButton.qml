import QtQuick
import Quorl

// An action with a drawn edge. One that has opened something is filled until that closes.
BaseButton {
    id: root

    property string symbol
    property bool symbolAtEnd
    property color fill: Qt.alpha(root.isDestructive ? Theme.danger : Theme.raised, 0)
    property bool isDestructive
    property bool isActive
    property bool isSpread
    property int elide: Text.ElideRight
    property bool isLarge: (root.parent as SheetFooter) !== null

    wantsHelp: root.hovered && !root.down && !root.isActive
    implicitHeight: root.isLarge ? Theme.primaryHeight : Theme.controlHeight
    leftPadding: root.isLarge ? 16 : 12
    rightPadding: leftPadding

    contentItem: ButtonLabel {
        text: root.text
        color: root.isDestructive ? Theme.danger : Theme.text
        symbolColor: root.isDestructive ? Theme.danger : Theme.quiet
        font: root.isSpread ? Theme.control : Theme.button
        leadingSymbol: root.symbolAtEnd ? "" : root.symbol
        trailingSymbol: root.symbolAtEnd ? root.symbol : ""
        isSpread: root.isSpread
        elide: root.elide
    }

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
        rest: root.isActive ? Theme.raised : root.fill
        lit: root.isDestructive ? Qt.alpha(Theme.danger, 0.08) : Theme.raised
        pressed: root.isDestructive ? Qt.alpha(Theme.danger, 0.14) : Theme.raised
        border.color: root.isActive ? "transparent" : root.down && !root.isDestructive ? Theme.muted : Theme.pencil
    }
}
