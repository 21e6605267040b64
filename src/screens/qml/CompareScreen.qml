import QtQuick
import Quorl

// The composer on one side and the answers on the other; in a narrow window one above the other, in one scroll.
Item {
    id: root

    required property DraftScreen screen

    readonly property bool isStacked: root.width < 800
    readonly property int padding: root.width < 500 ? 20 : 32
    readonly property int narrowest: 300
    readonly property int widest: Math.min(440, root.width - 340) // which leaves the answers 340
    readonly property int usual: Math.max(340, Math.round(root.width * 0.425))
    readonly property int composerWidth: Math.max(root.narrowest, Math.min(root.screen.divider || root.usual, root.widest))

    function focusQuestion() {
        caret.startAfresh();
        fields.focusQuestion();
    }

    Component.onCompleted: root.focusQuestion()

    CaretFollower {
        id: caret

        fields: fields
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        onActivated: root.screen.compare()
    }

    Connections {
        target: root.screen

        function onQuestionFocusRequested() {
            root.focusQuestion();
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
        width: root.composerWidth - divider.width
        height: root.height
        padding: root.padding
        fields: fields
        footer: footer
    }

    AnswersPane {
        id: answers

        x: root.isStacked ? 0 : root.composerWidth
        width: root.width - x
        height: root.height
        review: root.screen.review
        padding: root.padding
        isStacked: root.isStacked
        fields: fields
        footer: footer
    }

    Divider {
        id: divider

        visible: composer.visible
        x: composer.width
        height: root.height
        place: root.composerWidth
        minimum: root.narrowest
        maximum: root.widest
        onMoved: place => root.screen.moveDivider(Math.round(place))
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
