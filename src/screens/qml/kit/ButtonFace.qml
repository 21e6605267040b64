import QtQuick
import Quorl

// The ground of a button: tinted under the pointer and the finger, ringed for the keyboard.
Rectangle {
    id: root

    required property bool isHovered
    required property bool isDown
    required property bool hasRing
    property bool isOn
    property color rest: Qt.alpha(Theme.text, 0)
    property color lit: Theme.hover
    property color pressed: Theme.press

    radius: Theme.controlRadius
    color: root.isOn ? Theme.select : root.isDown ? root.pressed : root.isHovered ? root.lit : root.rest

    Behavior on color {
        ColorAnimation { duration: 80 }
    }

    FocusRing {
        around: root.radius
        visible: root.hasRing
    }
}
