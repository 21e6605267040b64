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

    background: Rectangle {
        readonly property bool isLit: root.enabled && (root.down || root.hovered)

        radius: Theme.controlRadius
        color: root.isDestructive ? (isLit ? Qt.tint(Theme.danger, Qt.alpha(Theme.text, 0.16)) : Theme.danger)
                                  : isLit ? Theme.accentHover : Theme.accent

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
