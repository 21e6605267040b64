import QtQuick
import Quorl

// The drawing of a checkbox.
Rectangle {
    id: root

    required property bool isOn
    required property bool isHovered

    implicitWidth: 16
    implicitHeight: 16
    radius: 4
    color: !root.isOn ? "transparent" : root.isHovered ? Theme.accentHover : Theme.accent
    border.color: root.isHovered ? Theme.text : Theme.edge
    border.width: root.isOn ? 0 : 1

    Icon {
        anchors.centerIn: parent
        visible: root.isOn
        symbol: Symbols.checkmark
        size: 14
        color: Theme.surface
    }
}
