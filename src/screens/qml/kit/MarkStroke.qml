import QtQuick
import Quorl

// A line with round ends, of the mark.
Rectangle {
    id: root

    required property real unit
    required property real thickness
    required property point from
    required property point to

    readonly property real run: root.to.x - root.from.x
    readonly property real fall: root.to.y - root.from.y

    x: (root.from.x + root.run / 2) * root.unit - width / 2
    y: (root.from.y + root.fall / 2) * root.unit - height / 2
    width: (Math.hypot(root.run, root.fall) + root.thickness) * root.unit
    height: root.thickness * root.unit
    radius: height / 2
    rotation: Math.atan2(root.fall, root.run) * 180 / Math.PI
    antialiasing: true
    color: Theme.accent
}
