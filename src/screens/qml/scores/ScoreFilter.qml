import QtQuick
import Quorl

// Which categories the tables speak of.
Flow {
    id: root

    required property ScoresScreen screen

    spacing: Theme.betweenFields

    Row {
        spacing: 12

        FieldLabel {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Category")
        }

        Picker {
            width: Math.min(240, root.width - x)
            label: qsTr("Category")
            model: root.screen.categories
            currentValue: root.screen.filter
            onChosen: value => root.screen.setFilter(value)
        }
    }

    CheckBox {
        text: qsTr("Include subcategories")
        checked: root.screen.includeChildren
        onToggled: root.screen.setIncludeChildren(checked)
    }
}
