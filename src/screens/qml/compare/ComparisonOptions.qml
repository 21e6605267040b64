import QtQuick
import Quorl

// What a comparison is given beside its question.
Popover {
    id: root

    required property DraftScreen screen

    readonly property bool isDecision: root.screen.mode === DraftScreen.Decision
    readonly property QuestionEditor firstQuestion: root.screen.questions.first

    title: qsTr("Options")
    spacing: 20

    LabelledField {
        width: parent.width
        visible: root.isDecision
        label: qsTr("Question identifier (optional)")
        text: root.firstQuestion?.name ?? ""
        helpText: qsTr("An identifier for API responses. Generated automatically when blank.")
        onEdited: text => root.firstQuestion?.editName(text)
    }
    TextButton {
        x: -leftPadding
        visible: root.isDecision
        text: qsTr("Add another question")
        leadingSymbol: Symbols.plus
        onClicked: {
            root.close();
            root.screen.questions.addQuestion();
        }
    }
    LabelledField {
        width: parent.width
        visible: root.screen.mode === DraftScreen.Generation
        label: qsTr("System prompt")
        placeholderText: qsTr("Optional instructions")
        isMultiline: true
        minimumLines: 2
        text: root.screen.systemPrompt
        onEdited: text => root.screen.editSystemPrompt(text)
    }
    Column {
        width: parent.width
        spacing: 8

        FieldLabel {
            id: rating

            text: qsTr("Rating")
        }
        Segments {
            width: parent.width
            model: [{ value: DraftScreen.YesNo, text: qsTr("Yes / No") }, { value: DraftScreen.OneToTen, text: qsTr("1 to 10") }]
            currentValue: root.screen.scoring
            accessibleName: rating.text
            onChosen: value => root.screen.setScoring(value)
        }
    }
    LabelledField {
        width: parent.width
        label: qsTr("Category (optional)")
        text: root.screen.category
        onEdited: text => root.screen.editCategory(text)
    }
    LabelledField {
        width: parent.width
        label: qsTr("Subcategory (optional)")
        text: root.screen.subcategory
        onEdited: text => root.screen.editSubcategory(text)
    }
}
