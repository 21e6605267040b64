import QtQuick
import Quorl

Item {
    id: root

    property string log

    function note(word: string) {
        root.log += word + " ";
    }

    Column {
        x: 20
        y: 20
        width: 300
        spacing: 12

        LabelledField { objectName: "line"; width: parent.width; label: "Name"; helpText: "What you call it"; text: "Zun"; onEdited: text => root.note("line:" + text) }
        LabelledField { objectName: "lines"; width: parent.width; accessibleName: "Notes"; placeholderText: "Notes, if any"; isMultiline: true; minimumLines: 2; onEdited: text => root.note("lines:" + text) }
        NumberField { objectName: "price"; width: parent.width; label: "Input $ / 1M tokens"; value: 3.5; placeholderText: "0"; onEdited: value => { root.note("price:" + value); this.value = value; } }
        NumberField { objectName: "tokens"; width: parent.width; label: "Max output tokens"; value: 1024; isWhole: true; onEdited: value => root.note("tokens:" + value) }
        SecretField { objectName: "secret"; width: parent.width; placeholderText: "API key" }
        LineField { objectName: "plain"; width: parent.width; placeholderText: "Plain" }
        SearchField { objectName: "search"; width: parent.width; placeholderText: "Search history"; accessibleName: "Search comparison history"; onEdited: text => root.note("search:" + text) }
    }

    Column {
        x: 360
        y: 20
        width: 300
        spacing: 12

        Picker {
            objectName: "picker"
            width: parent.width
            inForm: true
            label: "Provider"
            placeholder: "Choose a provider"
            model: [{ text: "First", value: "a" }, { text: "Second", value: "b" }, { text: "Third", value: "c" }]
            onChosen: value => { root.note("picked:" + value); currentValue = value; }
        }
        Segments {
            objectName: "segments"
            iconOnly: true
            accessibleName: "Answer format"
            model: [{ value: 0, symbol: Symbols.listBullet, text: "Choice", helpText: "Choose one option" },
                    { value: 1, symbol: Symbols.number, text: "Score", helpText: "" },
                    { value: 2, symbol: Symbols.checkmark, text: "", helpText: "Ask a yes or no question" }]
            currentValue: 0
            onChosen: value => { root.note("format:" + value); currentValue = value; }
        }
        ToggleSwitch { objectName: "toggle"; text: "Enabled"; onToggled: root.note("toggle:" + checked) }
        ToggleSwitch { objectName: "toggleOff"; text: "Zun"; detail: "Add an API key."; isTrailing: true; width: parent.width; enabled: false }
        CheckBox { objectName: "check"; text: "Include subcategories"; checked: true; onToggled: root.note("check:" + checked) }
        CheckBox { objectName: "checkOff"; text: "Off"; enabled: false; onToggled: root.note("checkOff") }
    }
}
