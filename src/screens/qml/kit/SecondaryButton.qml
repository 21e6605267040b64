import QtQuick
import Quorl

BaseButton {
    id: root

    leftPadding: 12
    rightPadding: 12

    contentItem: ButtonLabel {
        text: root.text
        color: Theme.text
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down || root.hovered ? Theme.raised : "transparent"
        border.color: root.down ? Theme.muted : Theme.pencil

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
