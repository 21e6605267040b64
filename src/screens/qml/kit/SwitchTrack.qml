import QtQuick
import Quorl

// The drawing of a switch.
Rectangle {
    id: root

    required property bool isOn
    required property bool isHovered

    implicitWidth: 36
    implicitHeight: 20
    radius: 10
    color: !root.isOn ? "transparent" : root.isHovered ? Theme.accentHover : Theme.accent
    border.width: root.isOn ? 0 : 1
    border.color: root.isHovered ? Theme.text : Theme.edge

    Rectangle {
        readonly property int size: root.isOn ? 14 : 10

        x: root.isOn ? root.width - size - 3 : 5
        y: (root.height - height) / 2
        width: size
        height: size
        radius: size / 2
        color: root.isOn ? Theme.surface : Theme.edge

        Behavior on x {
            enabled: Motion.isAllowed
            NumberAnimation { duration: 120 }
        }
    }
}
