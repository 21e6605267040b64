import QtQuick
import Quorl

// The categories, each followed by its subcategories, and above them a field for a new one.
Item {
    id: root

    required property CategoriesScreen screen

    readonly property real shortHeight: list.y + Math.min(5, list.count) * (Theme.primaryHeight + list.spacing)

    PageHeader {
        id: header

        width: root.width
        title: qsTr("Categories")
    }

    AddField {
        id: adding

        y: header.height + 12
        width: root.width
        placeholderText: qsTr("New category")
        buttonText: qsTr("Add")
        text: root.screen.newName
        canAdd: root.screen.canAdd
        onEdited: text => root.screen.newName = text
        onAdded: root.screen.add()
    }

    SelectionList {
        id: list

        x: -12
        y: adding.y + adding.height + 20
        width: root.width + 12
        height: root.height - y
        model: root.screen.categories
        selectedRow: root.screen.selectedRow
        onRowSelected: row => root.screen.select(row)

        Accessible.name: qsTr("Categories")

        delegate: CategoryRow {}
    }
}
