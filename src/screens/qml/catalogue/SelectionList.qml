import QtQuick
import QtQuick.Templates as T
import Quorl

// Rows of which one is selected. It is one stop for Tab; inside, Up and Down select the neighbour, and Return goes on to what
// is selected.
ListView {
    id: root

    required property int selectedRow
    property bool isKeyed // by the arrows, and not by clicks, so a ring follows

    signal rowSelected(int row)

    function goTo(row: int) {
        root.isKeyed = true;
        const next = Math.max(0, Math.min(row, root.count - 1));
        if (next !== root.currentIndex)
            root.rowSelected(next);
    }

    function goOn() {
        root.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
    }

    currentIndex: root.selectedRow
    spacing: 2
    clip: true
    pixelAligned: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: root.count > 0
    keyNavigationEnabled: false // it would move its own mark and not the selection
    highlightFollowsCurrentItem: false // which would take its time
    onCurrentIndexChanged: root.positionViewAtIndex(root.currentIndex, ListView.Contain)
    Keys.onUpPressed: root.goTo(root.currentIndex - 1)
    Keys.onDownPressed: root.goTo(root.currentIndex + 1)
    Keys.onReturnPressed: root.goOn()
    Keys.onEnterPressed: root.goOn()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            root.goTo(event.key === Qt.Key_Home ? 0 : root.count - 1);
    }

    Accessible.role: Accessible.List

    T.ScrollBar.vertical: PaneScrollBar {}
}
