import QtQuick
import Quorl

// A popover that is made when it opens and goes once it has closed. Its button opens and closes it.
Loader {
    id: root

    readonly property Popover popover: root.item as Popover

    function open() {
        root.active = true;
    }

    function toggle() {
        if (root.popover)
            root.popover.close();
        else
            root.open();
    }

    active: false
    onLoaded: root.popover.open()

    Connections {
        target: root.popover

        function onClosed() {
            root.active = false;
        }
    }
}
