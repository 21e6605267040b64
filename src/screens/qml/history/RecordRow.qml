import QtQuick
import QtQuick.Templates as T
import Quorl

// A ruled row of a RecordList.
T.ItemDelegate {
    id: root

    readonly property RecordList list: ListView.view as RecordList
    readonly property int reach: 16 // beyond what it shows, on both sides
    readonly property real contentSpace: root.list ? root.list.rowWidth : 0

    x: root.list ? root.list.inset - root.reach : 0
    width: root.contentSpace + 2 * root.reach
    leftPadding: root.reach
    rightPadding: root.reach
    hoverEnabled: true
    activeFocusOnTab: ListView.isCurrentItem || activeFocus
    onActiveFocusChanged: {
        if (activeFocus)
            root.list.positionViewAtIndex(root.ListView.view.currentIndex, ListView.Contain);
    }

    Accessible.onPressAction: root.clicked()

    background: Item {
        Rectangle {
            anchors.fill: parent
            visible: root.hovered || root.down
            radius: Theme.controlRadius
            color: Theme.raised
        }

        Hairline {
            x: root.reach
            y: parent.height - 1
            width: root.contentSpace
            visible: !root.hovered
        }

        FocusRing {
            anchors.margins: 2
            around: Theme.controlRadius - 4
            visible: root.visualFocus
        }
    }
}
