import QtQuick
import QtQuick.Templates as T
import Quorl

T.Button {
    id: root

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    leftPadding: 12
    rightPadding: 12
    opacity: enabled ? 1 : Theme.disabledOpacity
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.text

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
