import QtQuick
import Quorl

// What a model is: each change is saved at once.
Column {
    id: root

    required property ModelEditor editor
    required property var kinds

    spacing: 14

    ToggleSwitch {
        text: qsTr("Enabled")
        checked: root.editor.isEnabled
        onToggled: root.editor.isEnabled = checked
    }

    Grid {
        id: grid

        readonly property real fieldWidth: columns === 1 ? root.width : (root.width - columnSpacing) / 2

        columns: root.width < 520 ? 1 : 2
        columnSpacing: 32
        rowSpacing: 20

        LabelledField {
            width: grid.fieldWidth
            label: qsTr("Name")
            text: root.editor.name
            onEdited: text => root.editor.name = text
        }
        Picker {
            width: grid.fieldWidth
            label: qsTr("Provider")
            inForm: true
            model: root.kinds
            currentValue: root.editor.provider
            onChosen: value => root.editor.provider = value
        }
        LabelledField {
            width: grid.fieldWidth
            label: root.editor.identifierLabel
            placeholderText: root.editor.identifierPlaceholder
            text: root.editor.modelIdentifier
            onEdited: text => root.editor.modelIdentifier = text
        }
        LabelledField {
            width: grid.fieldWidth
            label: root.editor.locationLabel
            text: root.editor.location
            onEdited: text => root.editor.location = text
        }
        NumberField {
            width: grid.fieldWidth
            label: qsTr("Input $ / 1M tokens")
            placeholderText: qsTr("0")
            value: root.editor.inputPrice
            onEdited: value => root.editor.inputPrice = value
        }
        NumberField {
            width: grid.fieldWidth
            label: qsTr("Output $ / 1M tokens")
            placeholderText: qsTr("0")
            value: root.editor.outputPrice
            onEdited: value => root.editor.outputPrice = value
        }
        NumberField {
            width: grid.fieldWidth
            label: qsTr("Max output tokens")
            placeholderText: qsTr("1024")
            isWhole: true
            value: root.editor.maxOutputTokens
            onEdited: value => root.editor.maxOutputTokens = value
        }
    }
}
