import QtQuick
import Quorl

// The whole response as it should have been.
Sheet {
    id: root

    required property AnswerCorrection correction

    title: qsTr("Enter the corrected response")
    subtitle: qsTr("This response—not the model's answer—will be saved to your dataset.")
    panelWidth: 560
    visible: true
    onCancelled: root.correction.cancel()
    footer: [
        SecondaryButton {
            text: qsTr("Cancel")
            onClicked: root.cancel()
        },
        PrimaryButton {
            text: qsTr("Save correction")
            enabled: root.correction.canSave
            onClicked: root.correction.save()
        }
    ]

    LabelledField {
        width: parent.width
        label: qsTr("Corrected response")
        isMultiline: true
        minimumLines: 8
        text: root.correction.text
        onEdited: text => root.correction.edit(text)
    }
}
