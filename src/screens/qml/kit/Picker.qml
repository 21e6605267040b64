import QtQuick
import Quorl

// One of a list, chosen from a menu: a field in a form, a button elsewhere.
FocusScope {
    id: root

    property string label
    property var model: []
    property var currentValue
    property string placeholder
    property bool inForm
    property string helpText
    property string accessibleName: root.label !== "" ? root.label : root.placeholder

    readonly property int currentIndex: root.model.findIndex(entry => entry.value === root.currentValue)
    readonly property string currentText: root.currentIndex >= 0 ? root.model[root.currentIndex].text : ""
    readonly property bool hasLabel: root.inForm && root.label !== ""

    signal chosen(var value)

    implicitWidth: root.inForm ? 200 : button.implicitWidth
    implicitHeight: button.y + button.height

    FieldLabel {
        width: root.width
        visible: root.hasLabel
        text: root.label
    }

    PickerButton {
        id: button

        y: root.hasLabel ? Theme.labelLine : 0
        width: root.width
        focus: true
        text: root.currentText
        placeholder: root.placeholder
        inForm: root.inForm
        helpText: root.helpText
        accessibleName: root.accessibleName
        isOpen: menu.item !== null && (menu.item as Menu).visible
        onAsked: {
            menu.active = true;
            (menu.item as PickerMenu).toggle();
        }
    }

    // Made when it is first asked for.
    Loader {
        id: menu

        active: false
        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: PickerMenu {
            parent: button
            minimumWidth: button.width
            entries: root.model
            currentPlace: root.currentIndex
            onPicked: place => root.chosen(root.model[place].value)
        }
    }
}
