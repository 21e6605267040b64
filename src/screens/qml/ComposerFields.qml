import QtQuick
import Quorl

// What is asked, and of whom.
Item {
    id: root

    required property DraftScreen screen

    function focusQuestion() {
        const decisionFields = fields.item as DecisionFields;
        const generationFields = fields.item as GenerationFields;
        if (decisionFields)
            decisionFields.focusQuestion();
        else
            generationFields.focusQuestion();
    }

    function focusModels() {
        models.forceActiveFocus(Qt.TabFocusReason);
    }

    height: models.visible ? models.y + models.height : noModels.y + noModels.height

    ModeChoice {
        id: mode

        screen: root.screen
    }

    Loader {
        id: fields

        anchors.top: mode.bottom
        anchors.topMargin: 22
        width: root.width
        sourceComponent: root.screen.mode === DraftScreen.Decision ? decision : generation
    }

    FieldLabel {
        id: modelsLabel

        anchors.top: fields.bottom
        anchors.topMargin: Theme.betweenFields
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

    Words {
        id: noModels

        anchors.top: modelsLabel.bottom
        anchors.topMargin: 4
        width: root.width
        visible: !models.visible
        text: qsTr("No model is enabled for this kind of comparison.")
        font: Theme.control
        color: Theme.quiet
        wrapMode: Text.Wrap
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: decision

        DecisionFields {
            screen: root.screen
        }
    }
    Component {
        id: generation

        GenerationFields {
            screen: root.screen
        }
    }
}
