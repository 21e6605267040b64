import QtQuick
import Quorl

// Tests the connection, and deletes the model.
Item {
    id: root

    required property ModelEditor editor

    height: status.visible ? status.y + status.height : test.height

    SecondaryButton {
        id: test

        text: qsTr("Test connection")
        onClicked: root.editor.test()
    }

    SelectableText {
        id: status

        y: test.height + 8
        width: root.width
        visible: root.editor.testStatus !== ""
        text: root.editor.testStatus
        font: Theme.control
        line: Theme.controlLine
        color: root.editor.isTesting ? Theme.muted : Theme.text
    }

    SecondaryButton {
        anchors.right: parent.right
        text: qsTr("Delete model")
        isDestructive: true
        onClicked: root.editor.requestDelete()
    }
}
