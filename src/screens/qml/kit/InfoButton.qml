import QtQuick
import Quorl

// Beside a label: says more about it while the pointer is over it, when pressed, and while it has the keyboard.
BaseButton {
    id: root

    property bool isPinned

    implicitWidth: 14
    implicitHeight: Theme.labelLine
    padding: 0
    accessibleName: root.helpText
    wantsHelp: root.hovered || root.visualFocus || root.isPinned
    isHelpHasty: root.visualFocus || root.isPinned
    containmentMask: target
    onClicked: root.isPinned = !root.isPinned
    onActiveFocusChanged: root.isPinned = false
    onHoveredChanged: root.isPinned = false

    Item {
        id: target

        x: -7
        y: -6
        width: 28
        height: 28
    }

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: Symbols.info
            size: 14
            color: root.hovered || root.down ? Theme.text : Theme.quiet
        }
    }

    background: Item {
        FocusRing {
            around: 6
            visible: root.visualFocus
        }
    }
}
