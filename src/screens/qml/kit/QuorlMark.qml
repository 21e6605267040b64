import QtQuick
import Quorl

// The mark: a rounded square, a small one that gives it one sharp corner, a sheet, and a check on it. At work it lifts and
// settles. Its measures are those of a square of 64; small ones are bolder.
Item {
    id: root

    property real size: 32
    property bool animates

    readonly property real unit: root.size / 64
    readonly property bool isSmall: root.size <= 20
    readonly property real edge: root.snapped(4)
    readonly property real corner: root.snapped(32)
    readonly property real sheetEdge: root.snapped(root.isSmall ? 12 : 13)
    readonly property point knee: root.isSmall ? Qt.point(30, 40) : Qt.point(29.5, 39.5)
    readonly property bool isMoving: root.animates && root.visible && Motion.isAllowed
    property real lift: 0

    // To whole pixels of the screen: what is drawn without a GPU is moved to them anyway, each part its own way.
    function snapped(measure: real): real {
        return Math.round(measure * root.unit * Screen.devicePixelRatio) / Screen.devicePixelRatio;
    }

    implicitWidth: root.size
    implicitHeight: root.size
    onIsMovingChanged: {
        if (!root.isMoving)
            root.lift = 0;
    }

    Accessible.ignored: true

    SequentialAnimation {
        running: root.isMoving
        loops: Animation.Infinite

        NumberAnimation { target: root; property: "lift"; from: 0; to: 0.06; duration: 820; easing.type: Easing.InOutQuad }
        NumberAnimation { target: root; property: "lift"; from: 0.06; to: 0; duration: 820; easing.type: Easing.InOutQuad }
    }

    Item {
        y: -root.lift * root.size

        Rectangle {
            x: root.edge
            y: x
            width: root.size - 2 * x
            height: width
            radius: 22 * root.unit
            color: Theme.accent
        }

        Rectangle {
            x: root.corner
            y: x
            width: root.size - root.edge - x
            height: width
            radius: (root.isSmall ? 8 : 6) * root.unit
            color: Theme.accent
        }

        Rectangle {
            x: root.sheetEdge
            y: x
            width: root.size - 2 * x
            height: width
            radius: 14 * root.unit
            color: Theme.surface
        }

        MarkStroke {
            unit: root.unit
            thickness: root.isSmall ? 8 : 6
            from: root.isSmall ? Qt.point(22, 32) : Qt.point(22.5, 32.5)
            to: root.knee
        }

        MarkStroke {
            unit: root.unit
            thickness: root.isSmall ? 8 : 6
            from: root.knee
            to: root.isSmall ? Qt.point(42, 26) : Qt.point(42, 25.5)
        }
    }
}
