import QtQuick
import Quorl

// The rule under a field. It shows the keyboard's place, without moving the text.
Item {
    id: root

    required property bool isFocused
    required property bool isHovered

    Rectangle {
        width: root.width
        height: root.isFocused ? 2 : 1
        anchors.bottom: root.bottom
        color: root.isFocused ? Theme.accent : root.isHovered ? Theme.muted : Theme.pencil
    }
}
