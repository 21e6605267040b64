import QtQuick
import Quorl

// A row with a text to edit, ruled below, and room for a symbol at its left and a button at its right.
Item {
    id: root

    property alias text: field.text
    property alias placeholderText: field.placeholderText
    property string accessibleName: field.placeholderText
    property int leftInset
    property int rightInset: 28

    signal edited(string text)
    signal returnPressed

    function focusField() {
        field.forceActiveFocus(Qt.OtherFocusReason);
    }

    height: Theme.rowHeight

    LineField {
        id: field

        x: root.leftInset
        width: root.width - root.leftInset - root.rightInset
        height: root.height
        background: null
        onTextEdited: root.edited(text)
        Keys.onPressed: event => {
            const isReturn = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
            event.accepted = isReturn && event.modifiers === (event.modifiers & Qt.KeypadModifier);
            if (event.accepted)
                root.returnPressed();
        }

        Accessible.name: root.accessibleName
    }

    Rectangle {
        y: root.height - height
        width: root.width
        height: field.activeFocus ? 2 : 1
        color: field.activeFocus ? Theme.accent : Theme.line
    }
}
