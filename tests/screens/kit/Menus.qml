import QtQuick
import Quorl

Item {
    id: root

    property string log

    function note(word: string) {
        root.log += word + " ";
    }

    MenuButton {
        objectName: "button"
        x: 20
        y: 20
        text: "Tools"
        helpText: "Models and more"
        chevron: true
        menu: Menu {
            objectName: "menu"

            MenuEntry { text: "Models"; symbol: Symbols.cpu; onTriggered: root.note("models") }
            MenuEntry { text: "Off"; enabled: false; onTriggered: root.note("off") }
            MenuEntry { text: "Delete"; isDestructive: true; onTriggered: alert.open() }
            MenuDivider {}
            Menu {
                objectName: "inside"
                title: "Motion"

                MenuEntry { text: "System setting"; isCurrent: true; onTriggered: root.note("system") }
                MenuEntry { text: "Reduced motion"; onTriggered: root.note("reduced") }
            }
        }
    }

    MenuButton {
        objectName: "right"
        x: root.width - width - 20
        y: 20
        iconOnly: true
        symbol: Symbols.ellipsis
        helpText: "Actions for Zun"
        menu: Menu {
            objectName: "long"

            Repeater {
                model: 60

                MenuEntry {
                    required property int index

                    text: "Entry " + index
                    onTriggered: root.note(text)
                }
            }
        }
    }

    MenuButton {
        objectName: "low"
        x: 20
        y: root.height - height - 20
        text: "Low"
        menu: Menu {
            objectName: "above"

            MenuEntry { text: "One" }
            MenuEntry { text: "Two" }
        }
    }

    SecondaryButton { objectName: "other"; x: 300; y: 300; text: "Other"; onClicked: root.note("other") }

    AlertDialog { id: alert; objectName: "alert"; visible: false; title: "Delete this?"; acceptText: "Delete"; cancelText: "Cancel" }
}
