import QtQuick
import Quorl

// Takes a list of questions, one a line.
Sheet {
    id: root

    required property PastedQuestions pasted

    title: qsTr("Paste questions")
    panelWidth: 520
    problem: root.pasted.problem
    onCancelled: root.pasted.close()

    LabelledField {
        width: parent.width
        label: qsTr("Questions to paste")
        isMultiline: true
        minimumLines: 8
        text: root.pasted.text
        onEdited: text => root.pasted.edit(text)
    }

    footer: [
        SecondaryButton {
            text: qsTr("Cancel")
            onClicked: root.cancel()
        },
        PrimaryButton {
            text: root.pasted.addLabel
            enabled: root.pasted.canAdd
            onClicked: root.pasted.add()

            Shortcut {
                sequences: ["Ctrl+Return", "Ctrl+Enter"]
                enabled: root.pasted.canAdd
                onActivated: root.pasted.add()
            }
        }
    ]
}
