pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The items of the selected batch. They are one stop of the Tab key: Up, Down, Home and End move among them.
Column {
    id: root

    required property BatchesScreen screen
    property int current // where Tab goes

    readonly property alias count: items.count

    function goTo(row: int) {
        const item = items.itemAt(Math.max(0, Math.min(row, root.count - 1)));
        if (item)
            item.forceActiveFocus(Qt.TabFocusReason);
    }

    Keys.onUpPressed: root.goTo(root.current - 1)
    Keys.onDownPressed: root.goTo(root.current + 1)
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            root.goTo(event.key === Qt.Key_Home ? 0 : root.count - 1);
    }

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Items")

    Repeater {
        id: items

        model: root.screen.items

        BatchItem {
            width: root.width
            activeFocusOnTab: index === Math.min(root.current, root.count - 1)
            onActiveFocusChanged: {
                if (activeFocus)
                    root.current = index;
            }
            onClicked: root.screen.openItem(index)
        }
    }
}
