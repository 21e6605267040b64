import QtQuick
import QtQuick.Templates as T
import Quorl

// The entries of a menu. One that is higher than the window scrolls.
ListView {
    id: root

    required property FocusKeeper keeper
    property bool hasMarks // one of the entries is marked as the current one, and all leave room for its mark

    implicitHeight: contentHeight
    interactive: contentHeight > height
    clip: interactive
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false // the menu moves its own mark
    highlightFollowsCurrentItem: false // which would take its time
    onCurrentIndexChanged: root.positionViewAtIndex(root.currentIndex, ListView.Contain)

    T.ScrollBar.vertical: PaneScrollBar {}
}
