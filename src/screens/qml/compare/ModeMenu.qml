import QtQuick
import Quorl

// The kind of comparison, and the ways to another.
MenuButton {
    id: root

    required property DraftScreen screen

    text: root.screen.modeLabel
    look: MenuButton.Look.Title
    chevron: true
    helpText: qsTr("Switch between single questions, bulk questions, or language models")
    menu: entries.item as Menu
    onMenuWanted: entries.active = true

    // Made when it first opens: its shadow is a picture, and a window opens sooner without reading one.
    Loader {
        id: entries

        active: false
        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: Menu {
            minimumWidth: 208

            MenuEntry {
                text: qsTr("Single question")
                onTriggered: root.screen.askSingleQuestion()
            }
            MenuEntry {
                text: qsTr("Bulk questions")
                onTriggered: root.screen.askBulkQuestions()
            }
            MenuEntry {
                text: qsTr("Decision models")
                onTriggered: root.screen.askDecisionModels()
            }
            MenuEntry {
                text: qsTr("Ask language models")
                onTriggered: root.screen.askLanguageModels()
            }
        }
    }
}
