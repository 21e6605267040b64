pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The options of a choice.
Column {
    id: root

    required property list<string> labels

    readonly property int count: root.labels.length // a text that changes leaves the fields in place

    signal edited(int place, string text)
    signal addRequested

    spacing: 4

    Repeater {
        model: root.count

        LineField {
            id: field

            required property int index

            width: root.width
            placeholderText: qsTr("Choice")
            text: root.labels[field.index] ?? ""
            onTextEdited: root.edited(field.index, text)

            Accessible.name: qsTr("Choice %1").arg(field.index + 1)
        }
    }

    TextButton {
        x: -leftPadding
        text: qsTr("Add choice")
        leadingSymbol: Symbols.plus
        onClicked: root.addRequested()
    }
}
