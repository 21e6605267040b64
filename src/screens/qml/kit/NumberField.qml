import QtQuick
import Quorl

// A number under a label, as the user's locale writes it. What is no number is not told, and gone when the keyboard goes.
FocusScope {
    id: root

    property string label
    property real value
    property string placeholderText
    property bool isWhole
    property string accessibleName: root.label !== "" ? root.label : root.placeholderText

    signal edited(real value)

    function show() {
        const shown = Numerals.text(root.value);
        if (field.text !== shown)
            field.text = shown;
    }

    function read() {
        const number = Numerals.number(field.text, root.isWhole);
        if (!isNaN(number))
            root.edited(number);
    }

    implicitHeight: field.y + field.height
    implicitWidth: 200
    onValueChanged: {
        if (!field.activeFocus || Numerals.number(field.text, root.isWhole) !== root.value)
            root.show();
    }
    Component.onCompleted: root.show()

    FieldLabel {
        width: root.width
        visible: root.label !== ""
        text: root.label
    }

    LineField {
        id: field

        y: root.label !== "" ? Theme.labelLine : 0
        width: root.width
        focus: true
        placeholderText: root.placeholderText
        inputMethodHints: root.isWhole ? Qt.ImhDigitsOnly : Qt.ImhFormattedNumbersOnly
        onTextEdited: root.read()
        onActiveFocusChanged: {
            if (!activeFocus)
                root.show();
        }

        Accessible.name: root.accessibleName
    }
}
