import QtQuick
import QtQuick.Templates as T
import Quorl

// A menu. Up and Down move, Return chooses, Right and Left enter and leave a menu inside, Esc closes the innermost.
T.Menu {
    id: root

    property real minimumWidth: 160
    property bool alignRight // with the right edge of what it hangs from
    property real rise: 0 // of what comes in, in pixels
    property bool isLeaving // chosen from or given up, and still fading out

    readonly property real room: parent ? parent.Window.height - 2 * Theme.fromEdges : 0
    readonly property bool isInside: parent !== null && (parent as T.MenuItem) !== null
    readonly property FocusKeeper keeper: FocusKeeper {}
    readonly property Placement placement: Placement {}

    function prepare() {
        root.isLeaving = false;
        root.keeper.keep(root.parent);
        if (!root.isInside)
            root.placement.choose(root.parent, root.implicitWidth, root.implicitHeight, root.alignRight);
    }

    x: root.isInside || root.placement.goesRight || !parent ? 0 : parent.width - width
    y: root.isInside || !parent ? 0 : root.placement.goesBelow ? parent.height + 4 : -height - 4
    implicitWidth: Math.max(root.minimumWidth, contentWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    height: root.room > 0 ? Math.min(implicitHeight, root.room) : implicitHeight
    margins: Theme.fromEdges
    padding: 6
    overlap: -6
    cascade: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    onAboutToShow: root.prepare()
    onAboutToHide: {
        root.isLeaving = true;
        if (!root.isInside)
            root.keeper.giveBack(root.contentItem);
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 120; easing.type: Easing.OutCubic }
        NumberAnimation { property: "rise"; from: Motion.isAllowed ? -4 : 0; to: 0; duration: 120; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: 80 }
    }

    delegate: MenuEntry {}

    contentItem: MenuList {
        model: root.contentModel
        currentIndex: root.currentIndex
        keeper: root.keeper
        transform: Translate { y: root.rise }
    }

    background: Panel {
        transform: Translate { y: root.rise }
    }
}
