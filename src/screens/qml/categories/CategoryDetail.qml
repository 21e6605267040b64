import QtQuick
import Quorl

// The selected category, or what categories are for.
Item {
    id: root

    required property CategoriesScreen screen

    height: form.visible ? form.height : empty.height

    Column {
        id: empty

        visible: !root.screen.hasSelection
        width: root.width
        spacing: Theme.betweenFields

        PageHeader {
            width: parent.width
            title: qsTr("Categories")
            subtitle: qsTr("Type a name when you compare models. Scores remember it. A subcategory sits one level under a parent.")
        }
        EmptyPane {
            width: parent.width
            title: qsTr("Pick a category")
            message: qsTr("Type a name on the left, or select one you have already used.")
            symbol: Symbols.tray
        }
    }

    Column {
        id: form

        visible: root.screen.hasSelection
        width: root.width
        spacing: 28

        PageHeader {
            width: parent.width
            title: root.screen.name
            subtitle: root.screen.subtitle
        }
        CategoryNameField {
            width: parent.width
            screen: root.screen
        }
        Column {
            visible: root.screen.takesSubcategories
            width: parent.width

            FieldLabel {
                width: parent.width
                text: qsTr("Subcategory")
            }
            AddField {
                width: parent.width
                placeholderText: qsTr("Type a subcategory")
                buttonText: qsTr("Add subcategory")
                text: root.screen.newSubcategory
                canAdd: root.screen.canAddSubcategory
                onEdited: text => root.screen.newSubcategory = text
                onAdded: root.screen.addSubcategory()
            }
        }
        Column {
            width: parent.width
            topPadding: 4
            spacing: 20

            Hairline {
                width: parent.width
            }
            SecondaryButton {
                text: qsTr("Delete")
                isDestructive: true
                onClicked: root.screen.requestDelete()
            }
        }
    }
}
