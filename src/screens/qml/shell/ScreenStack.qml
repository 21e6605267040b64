import QtQuick
import Quorl

// The screen of the destination, made when it is entered and gone when it is left.
Loader {
    id: root

    required property RootScreen screens

    function enter() {
        root.setSource(Qt.resolvedUrl("../" + root.screens.screenFile), { screen: root.screens.screen });
        // What had the keyboard may have gone with the screen that was left: Tab goes on into the next one.
        if (!root.Window.activeFocusItem || root.Window.activeFocusItem === root.Window.contentItem)
            root.forceActiveFocus(Qt.OtherFocusReason);
    }

    Component.onCompleted: root.enter()

    // Inside an item, for then it rests while an alert or a sheet lies over the window.
    Shortcut {
        sequences: ["Ctrl+N"]
        onActivated: root.screens.newComparison()
    }

    Connections {
        target: root.screens

        function onScreenChanged() {
            root.enter();
        }
    }
}
