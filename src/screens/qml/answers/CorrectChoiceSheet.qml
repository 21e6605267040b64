pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The right choice of each question.
Sheet {
    id: root

    required property AnswerCorrection correction

    title: qsTr("Choose the correct answer")
    subtitle: qsTr("This correction will be saved to your dataset.")
    spacing: 24
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

    Repeater {
        model: root.correction.questions

        Column {
            id: question

            required property var modelData
            required property int index

            width: parent.width
            spacing: 8

            Words {
                width: question.width
                visible: root.correction.questions.length >= 2
                text: question.modelData.prompt
                font: Theme.navigation
                color: Theme.text
                wrapMode: Text.Wrap
            }
            Picker {
                width: question.width
                inForm: true
                label: qsTr("Correct answer")
                placeholder: qsTr("Choose an answer")
                model: question.modelData.options
                currentValue: root.correction.choices[question.index]
                onChosen: value => root.correction.choose(question.index, value)
            }
        }
    }
}
