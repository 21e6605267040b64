pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The models, and above them the ways to add one.
Item {
    id: root

    required property ModelsScreen screen

    readonly property real shortHeight: list.y + Math.min(5, list.count) * (Theme.listRowHeight + list.spacing)

    PageHeader {
        id: header

        width: root.width
        title: qsTr("Models")

        MenuButton {
            text: qsTr("Add")
            accessibleName: qsTr("Add")
            chevron: true
            alignRight: true
            menu: Menu {
                Repeater {
                    model: root.screen.kinds

                    MenuEntry {
                        required property var modelData

                        text: modelData.text
                        onTriggered: root.screen.add(modelData.value)
                    }
                }
            }
        }
    }

    SelectionList {
        id: list

        x: -12
        y: header.height + 20
        width: root.width + 12
        height: root.height - y
        model: root.screen.models
        selectedRow: root.screen.selectedRow
        onRowSelected: row => root.screen.select(row)

        Accessible.name: qsTr("Models")

        delegate: ModelRow {}
    }
}
