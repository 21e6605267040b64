import QtQuick
import Quorl

// What is asked, and of whom.
Item {
    id: root

    required property DraftScreen screen

    function focusQuestion() {
        question.forceActiveFocus(Qt.OtherFocusReason);
    }

    function focusModels() {
        models.forceActiveFocus(Qt.TabFocusReason);
    }

    height: models.visible ? models.y + models.height : system.y + system.height

    PaneTitle {
        id: mode

        text: root.screen.modeTitle
    }

    TextBox {
        id: question

        anchors.top: mode.bottom
        anchors.topMargin: 22
        width: root.width
        minimumLines: 6
        line: Theme.promptLine
        font: Theme.prompt
        placeholderText: qsTr("What would you like to ask?")
        text: root.screen.prompt
        onTextChanged: root.screen.editPrompt(text)

        Accessible.name: qsTr("Question")
    }

    FieldLabel {
        id: systemLabel

        anchors.top: question.bottom
        anchors.topMargin: Theme.betweenFields
        text: qsTr("System prompt")
    }

    TextBox {
        id: system

        anchors.top: systemLabel.bottom
        anchors.topMargin: 4
        width: root.width
        placeholderText: qsTr("Optional instructions")
        text: root.screen.systemPrompt
        onTextChanged: root.screen.editSystemPrompt(text)

        Accessible.name: systemLabel.text
    }

    FieldLabel {
        id: modelsLabel

        anchors.top: system.bottom
        anchors.topMargin: Theme.betweenFields
        visible: models.visible
        text: qsTr("Models")
    }

    ModelChoiceList {
        id: models

        anchors.top: modelsLabel.bottom
        anchors.topMargin: 4
        width: root.width
        visible: count > 0
        model: root.screen.models
        onToggled: modelID => root.screen.toggleModel(modelID)

        Accessible.name: modelsLabel.text
    }
}
