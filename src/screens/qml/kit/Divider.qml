import QtQuick
import Quorl

// A hairline between two panes. Where it has a `minimum` and a `maximum` it can be dragged.
Item {
    id: root

    property bool vertical: true
    property real place
    property real minimum: 0
    property real maximum: 0

    readonly property bool isDraggable: root.maximum > root.minimum

    signal moved(real place)

    implicitWidth: root.vertical ? 1 : 100
    implicitHeight: root.vertical ? 100 : 1

    Accessible.role: Accessible.Splitter
    Accessible.ignored: !root.isDraggable

    Rectangle {
        anchors.fill: parent
        color: handle.pressed ? Theme.accent : handle.containsMouse ? Theme.pencil : Theme.line
    }

    MouseArea {
        id: handle

        property real start

        function along(event: MouseEvent): real {
            const point = handle.mapToItem(null, event.x, event.y);
            return root.vertical ? point.x : point.y;
        }

        anchors.fill: parent
        anchors.leftMargin: root.vertical ? -4 : 0
        anchors.rightMargin: root.vertical ? -4 : 0
        anchors.topMargin: root.vertical ? 0 : -4
        anchors.bottomMargin: root.vertical ? 0 : -4
        enabled: root.isDraggable
        hoverEnabled: true
        preventStealing: true
        cursorShape: root.vertical ? Qt.SplitHCursor : Qt.SplitVCursor
        onPressed: event => start = handle.along(event) - root.place
        onPositionChanged: event => {
            if (handle.pressed)
                root.moved(Math.max(root.minimum, Math.min(handle.along(event) - handle.start, root.maximum)));
        }
    }
}
