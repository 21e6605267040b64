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

    // Rows that come in above take the view's own mark along, which nothing that is selected does.
    function follow() {
        root.currentIndex = root.selectedRow;
        root.positionViewAtIndex(root.currentIndex, ListView.Contain);
    }

    function goTo(row: int) {
        root.isKeyed = true;
        const next = Math.max(0, Math.min(row, root.count - 1));
        if (next !== root.selectedRow)
            root.rowSelected(next);
    }

    function goOn() {
        root.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: 2
    clip: true
    pixelAligned: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: root.count > 0
    keyNavigationEnabled: false // it would move its own mark and not the selection
    highlightFollowsCurrentItem: false // which would take its time
    onSelectedRowChanged: root.follow()
    onCurrentIndexChanged: {
        if (root.currentIndex !== root.selectedRow)
            moved.restart();
    }
    Component.onCompleted: root.follow()
    Keys.onUpPressed: root.goTo(root.selectedRow - 1)
    Keys.onDownPressed: root.goTo(root.selectedRow + 1)
    Keys.onReturnPressed: root.goOn()
    Keys.onEnterPressed: root.goOn()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            root.goTo(event.key === Qt.Key_Home ? 0 : root.count - 1);
    }

    Accessible.role: Accessible.List

    Timer {
        id: moved

        interval: 0 // when the view has taken the rows in
        onTriggered: root.follow()
    }

    T.ScrollBar.vertical: PaneScrollBar {}
}
