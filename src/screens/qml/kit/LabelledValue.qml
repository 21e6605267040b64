import QtQuick
import Quorl

// A value under its label, to be read, selected and copied.
Column {
    id: root

    property string label
    property string value
    property bool isMonospace

    spacing: 4

    FieldLabel {
        width: root.width
        visible: root.label !== ""
        text: root.label
    }

    SelectableText {
        width: root.width
        text: root.value
        font: root.isMonospace ? Theme.monospace : Theme.body
        line: root.isMonospace ? Theme.monospaceLine : Theme.bodyLine

        Accessible.description: root.label
    }
}
