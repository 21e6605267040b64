import QtQuick
import Quorl

// What all models know.
Item {
    id: root

    required property DraftScreen screen

    implicitHeight: field.y + field.height

    FieldLabel {
        id: label

        text: root.screen.mode === DraftScreen.Bulk ? qsTr("Shared context") : qsTr("Context")
    }

    TextBox {
        id: field

        y: label.height + 7
        width: root.width
        minimumLines: 3
        placeholderText: qsTr("What should the models know?")
        text: root.screen.prompt
        onTextChanged: root.screen.editPrompt(text)

        Accessible.name: label.text
    }

    InfoButton {
        anchors { left: label.right; leftMargin: 5; verticalCenter: label.verticalCenter }
        accessibleName: qsTr("About context")
        helpText: qsTr("Required. Facts or instructions every model uses. In bulk mode, this is shared by every question.")
    }
}
