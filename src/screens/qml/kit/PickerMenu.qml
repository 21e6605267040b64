pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The menu of a picker: the chosen one is where the arrows start.
Menu {
    id: root

    property var entries: []
    property int currentPlace: -1

    signal picked(int place)

    function toggle() {
        if (root.visible) {
            root.close();
            return;
        }
        root.open();
        root.currentIndex = Math.max(0, root.currentPlace);
    }

    Repeater {
        model: root.entries

        MenuEntry {
            required property int index
            required property var modelData

            text: modelData.text
            isCurrent: index === root.currentPlace
            onTriggered: root.picked(index)
        }
    }
}
