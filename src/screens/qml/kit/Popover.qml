import QtQuick
import QtQuick.Templates as T
import Quorl

// A panel beside what it belongs to, for fields and lists. Its content stands in a column.
T.Popup {
    id: root

    default property alias content: column.data
    property string title
    property real panelWidth: 320
    property Item anchorItem
    property bool alignRight
    property bool takesKeys: true // the first of its controls gets the keyboard
    property real rise: 0 // of what comes in, in pixels
    property int edgeBeside: 24
    property int edgeAbove: 20

    readonly property FocusKeeper keeper: FocusKeeper {}
    readonly property Placement placement: Placement {}
    readonly property size room: parent ? Qt.size(parent.Window.width - 2 * Theme.fromEdges, parent.Window.height - 2 * Theme.fromEdges)
                                        : Qt.size(0, 0)

    function prepare() {
        root.keeper.keep(root.parent);
        root.placement.choose(root.parent, root.width, root.implicitHeight, root.alignRight);
    }

    // Whoever takes the keyboard out of it has gone on to something else. A menu or an alert only borrows it, and its own
    // button, which is pressed at the moment, will close it anyway.
    function followKeys() {
        const item = root.parent ? root.parent.Window.activeFocusItem : null;
        const isElsewhere = item && item.parent && item !== root.parent && !root.keeper.isInside(T.Overlay.overlay, item);
        if (root.opened && root.takesKeys && isElsewhere)
            root.close();
    }

    function toggle() {
        if (root.visible)
            root.close();
        else
            root.open();
    }

    parent: root.anchorItem
    x: root.placement.goesRight || !parent ? 0 : parent.width - width
    y: root.placement.goesBelow && parent ? parent.height + 4 : -height - 4
    width: Math.min(root.panelWidth, root.room.width)
    height: Math.min(implicitHeight, root.room.height)
    implicitHeight: column.y + column.height + root.edgeAbove
    margins: Theme.fromEdges
    spacing: 16
    focus: root.takesKeys
    closePolicy: T.Popup.CloseOnPressOutsideParent // what closes on Esc by itself keeps all shortcuts of the window to itself
    onAboutToShow: root.prepare()
    onVisibleChanged: {
        if (visible && root.takesKeys)
            root.keeper.enter(column);
    }
    onActiveFocusChanged: root.followKeys()
    onAboutToHide: root.keeper.giveBack(root.contentItem)

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 120; easing.type: Easing.OutCubic }
        NumberAnimation { property: "rise"; from: Motion.isAllowed ? -4 : 0; to: 0; duration: 120; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: 80 }
    }

    // The alias to what is inside needs it at once anyway.
    // qmllint disable deferred-property-id
    contentItem: ScrollPane {
        contentHeight: root.implicitHeight
        transform: Translate { y: root.rise }
        Keys.onEscapePressed: root.close() // also while the menu that has opened it goes, which keeps shortcuts to itself

        Accessible.role: Accessible.Pane
        Accessible.name: root.title

        // What had the keyboard inside may have gone.
        Shortcut {
            sequences: ["Esc"]
            enabled: root.visible && root.takesKeys
            onActivated: root.close()
        }

        Words {
            id: heading

            x: root.edgeBeside
            y: root.edgeAbove
            width: root.width - 2 * x
            visible: root.title !== ""
            text: root.title
            font: Theme.section
            color: Theme.text
            lineHeight: Theme.sectionLine
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
        }

        Column {
            id: column

            x: root.edgeBeside
            y: heading.visible ? heading.y + heading.height + 12 : root.edgeAbove
            width: root.width - 2 * x
            spacing: root.spacing
        }
    }

    background: Panel {
        transform: Translate { y: root.rise }
    }
}
