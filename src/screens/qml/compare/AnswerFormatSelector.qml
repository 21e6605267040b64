import QtQuick
import Quorl

// The three types of a question.
Item {
    id: root

    required property int type

    signal chosen(int type)

    height: Theme.controlHeight

    FieldLabel {
        id: label

        anchors.verticalCenter: root.verticalCenter
        text: qsTr("Answer format")
    }

    Segments {
        anchors { right: root.right; verticalCenter: root.verticalCenter }
        iconOnly: true
        model: [{ value: QuestionEditor.Choice, symbol: Symbols.listBullet, text: "", helpText: qsTr("Choose one option") },
                { value: QuestionEditor.Score, symbol: Symbols.number, text: "", helpText: qsTr("Place the answer on an ordered scale") },
                { value: QuestionEditor.YesNo, symbol: Symbols.checkmark, text: "", helpText: qsTr("Ask a yes or no question") }]
        currentValue: root.type
        accessibleName: label.text
        onChosen: value => root.chosen(value)
    }
}
