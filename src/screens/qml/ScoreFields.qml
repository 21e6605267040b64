pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The levels of a score, from lowest to highest.
Column {
    id: root

    required property list<string> levels
    required property bool canAdd

    readonly property int count: root.levels.length // a text that changes leaves the fields in place

    signal edited(int place, string text)
    signal addRequested

    spacing: 4

    FieldLabel {
        text: qsTr("Lowest → highest")
    }

    Repeater {
        model: root.count

        LineField {
            id: field

            required property int index

            readonly property bool isLowest: field.index === 0
            readonly property bool isHighest: field.index === root.count - 1

            width: root.width
            placeholderText: field.isLowest ? qsTr("Lowest level")
                           : field.isHighest ? qsTr("Highest level") : qsTr("Level %1").arg(field.index + 1)
            text: root.levels[field.index] ?? ""
            onTextEdited: root.edited(field.index, text)

            Accessible.name: field.isLowest ? qsTr("Lowest score level")
                           : field.isHighest ? qsTr("Highest score level") : qsTr("Score level %1").arg(field.index + 1)
        }
    }

    TextButton {
        x: -leftPadding
        text: qsTr("Add level")
        leadingSymbol: Symbols.plus
        helpText: root.canAdd ? "" : qsTr("A score can use up to ten ordered levels")
        enabled: root.canAdd
        onClicked: root.addRequested()
    }
}
