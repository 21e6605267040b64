import QtQuick
import Quorl

// The name of a category. What has become of it stands in the field with every letter, and the caret keeps its place.
FocusScope {
    id: root

    required property CategoriesScreen screen

    function show() {
        if (field.text === root.screen.name)
            return;
        const behindCaret = field.length - field.cursorPosition;
        field.text = root.screen.name;
        field.cursorPosition = Math.max(0, field.length - behindCaret);
    }

    implicitHeight: field.y + field.height
    Component.onCompleted: root.show()

    Connections {
        target: root.screen

        function onNameChanged() {
            root.show();
        }
        function onNameReplaced() {
            field.selectAll(); // the next letter takes its place
        }
    }

    FieldLabel {
        width: root.width
        text: qsTr("Name")
    }

    LineField {
        id: field

        y: Theme.labelLine
        width: root.width
        focus: true
        onTextEdited: root.screen.rename(text)
        onEditingFinished: root.screen.endTyping()

        Accessible.name: qsTr("Name")
    }
}
