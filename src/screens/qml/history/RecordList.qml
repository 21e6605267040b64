import QtQuick
import QtQuick.Templates as T
import Quorl

// A list of many rows as one stop of the Tab key: Up, Down, Page Up, Page Down, Home and End move in it.
ListView {
    id: root

    required property real inset // of the rows
    required property real rowWidth
    property int usualRowHeight: Theme.historyRowHeight

    readonly property int rowsOfPage: Math.max(1, Math.floor(root.height / root.usualRowHeight) - 1)

    function goTo(row: int) {
        if (root.count === 0)
            return;
        root.currentIndex = Math.max(0, Math.min(row, root.count - 1));
        root.currentItem.forceActiveFocus(Qt.TabFocusReason);
    }

    function goToTop() {
        root.currentIndex = root.count > 0 ? 0 : -1;
        root.positionViewAtBeginning();
    }

    function rowFor(key: int): int {
        switch (key) {
        case Qt.Key_Up:
            return root.currentIndex - 1;
        case Qt.Key_Down:
            return root.currentIndex + 1;
        case Qt.Key_PageUp:
            return root.currentIndex - root.rowsOfPage;
        case Qt.Key_PageDown:
            return root.currentIndex + root.rowsOfPage;
        case Qt.Key_Home:
            return 0;
        case Qt.Key_End:
            return root.count - 1;
        }
        return -2;
    }

    clip: true
    pixelAligned: true
    boundsBehavior: Flickable.StopAtBounds
    highlightFollowsCurrentItem: false // which would take its time
    onCountChanged: {
        if (root.currentIndex < 0 && root.count > 0)
            root.currentIndex = 0; // which is where Tab goes
    }
    Keys.onPressed: event => {
        const row = root.rowFor(event.key);
        event.accepted = row > -2;
        if (event.accepted)
            root.goTo(row);
    }

    Accessible.role: Accessible.List

    T.ScrollBar.vertical: PaneScrollBar {}
}
