import QtQuick
import Quorl

// The one main action of a view.
BaseButton {
    id: root

    property string trailingSymbol

    implicitHeight: Theme.primaryHeight
    leftPadding: 16
    rightPadding: 16

    contentItem: ButtonLabel {
        text: root.text
        color: Theme.surface
        trailingSymbol: root.trailingSymbol
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down || root.hovered ? Theme.accentHover : Theme.accent

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
