import QtQuick
import Quorl

// A label, and beside it a value to be selected.
Item {
    id: root

    required property string label
    required property string value

    implicitHeight: text.height

    FieldLabel {
        y: -2 // on the base line of the value
        height: Theme.monospaceLine
        text: root.label

        Accessible.role: Accessible.StaticText
        Accessible.name: root.label
        Accessible.ignored: false
    }

    SelectableText {
        id: text

        x: 88
        width: root.width - x
        text: root.value
        font: Theme.monospace
        line: Theme.monospaceLine
        wrapMode: TextEdit.WrapAnywhere
    }
}
