import QtQuick
import Quorl

// The composer on one side and the answers on the other; in a narrow window one above the other, in one scroll.
Item {
    id: root

    required property DraftScreen screen
    property bool takesKeys: true // nothing lies over the screen

    readonly property bool isStacked: root.width < 800
    readonly property int padding: root.width < 500 ? 20 : 32

    Component.onCompleted: fields.focusQuestion()

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: root.takesKeys
        onActivated: root.screen.compare()
    }

    Connections {
        target: root.screen

        function onQuestionFocusRequested() {
            fields.focusQuestion();
        }
        function onModelsRequested() {
            footer.openModels();
        }
        function onComparisonStarted() {
            if (root.isStacked)
                answers.scrollToHead();
        }
    }

    ComposerPane {
        id: composer

        visible: !root.isStacked
        width: Math.max(340, Math.min(Math.round(root.width * 0.425), 440))
        height: root.height
        padding: root.padding
        fields: fields
        footer: footer
    }

    Rectangle {
        visible: composer.visible
        x: composer.width
        width: 1
        height: root.height
        color: Theme.line
    }

    AnswersPane {
        id: answers

        x: root.isStacked ? 0 : composer.width + 1
        width: root.width - x
        height: root.height
        review: root.screen.review
        padding: root.padding
        isStacked: root.isStacked
        fields: fields
        footer: footer
    }

    ComposerFields {
        id: fields

        parent: root.isStacked ? answers.fieldsSlot : composer.fieldsSlot
        width: parent.width
        screen: root.screen
    }

    ComposerFooter {
        id: footer

        parent: root.isStacked ? answers.footerSlot : composer.footerSlot
        width: parent.width
        screen: root.screen
    }
}
