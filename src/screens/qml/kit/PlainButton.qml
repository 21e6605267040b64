import QtQuick
import Quorl

// A button for roles that no control of the toolkit has: a control of Qt 6.4 always tells its own.
Item {
    id: root

    property string text
    property string helpText
    property string accessibleName
    property bool isFocusQuiet // the keyboard has come by a click, so no ring
    property bool isOpen // what it opens has the keyboard meanwhile, and will give it back

    readonly property bool hovered: pointer.containsMouse
    readonly property bool down: pointer.pressed || root.isHeld
    readonly property bool visualFocus: root.activeFocus && !root.isFocusQuiet
    property bool isHeld // by the space bar

    signal clicked

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted && !event.isAutoRepeat)
            root.clicked();
    }

    activeFocusOnTab: true
    opacity: enabled ? 1 : Theme.disabledOpacity
    onActiveFocusChanged: {
        if (!root.activeFocus && !root.isOpen && root.Window.active)
            root.isFocusQuiet = false;
        root.isHeld = false;
    }
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)
    Keys.onSpacePressed: event => root.isHeld = true
    Keys.onReleased: event => {
        event.accepted = event.key === Qt.Key_Space && root.isHeld && !event.isAutoRepeat;
        if (event.accepted) {
            root.isHeld = false;
            root.clicked();
        }
    }

    Accessible.focusable: true
    Accessible.name: root.accessibleName !== "" ? root.accessibleName : root.text !== "" ? root.text : root.helpText
    Accessible.onPressAction: if (root.enabled) root.clicked()

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true
        onPressed: {
            root.isFocusQuiet = true;
            root.forceActiveFocus(Qt.MouseFocusReason);
        }
        onClicked: root.clicked()
    }

    HelpText {
        text: root.helpText
        wanted: root.hovered && !root.down && !root.isOpen
    }
}
