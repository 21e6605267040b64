import QtQuick
import Quorl

// A label over a field of one line, or of as many as its text takes.
FocusScope {
    id: root

    property string label
    property string text
    property string placeholderText
    property string helpText
    property string accessibleName: root.label !== "" ? root.label : root.placeholderText
    property bool isMultiline
    property int minimumLines: 1
    property font font: Theme.body

    readonly property int fieldTop: root.label !== "" ? Theme.labelLine + (root.isMultiline ? 3 : 0) : 0
    // Qt describes a field to screen readers by its placeholder, whatever its description says.
    readonly property string explanation: root.placeholderText !== "" ? root.placeholderText : root.helpText

    signal edited(string text)

    implicitHeight: root.fieldTop + field.height
    implicitWidth: 200

    HoverHandler {
        id: pointer
    }
    HelpText {
        text: root.helpText
        wanted: pointer.hovered
    }

    FieldLabel {
        width: root.width
        visible: root.label !== ""
        text: root.label
    }

    Loader {
        id: field

        y: root.fieldTop
        width: root.width
        focus: true
        sourceComponent: root.isMultiline ? box : line
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: line

        LineField {
            focus: true
            text: root.text
            font: root.font
            placeholderText: root.explanation
            hidesPlaceholder: root.placeholderText === ""
            onTextEdited: root.edited(text)

            Accessible.name: root.accessibleName
            Accessible.description: root.explanation
        }
    }

    Component {
        id: box

        TextBox {
            focus: true
            text: root.text
            font: root.font
            placeholderText: root.explanation
            hidesPlaceholder: root.placeholderText === ""
            minimumLines: root.minimumLines
            onTextChanged: {
                if (text !== root.text)
                    root.edited(text);
            }

            Accessible.name: root.accessibleName
            Accessible.description: root.explanation
        }
    }
}
