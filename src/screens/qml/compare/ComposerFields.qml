import QtQuick
import Quorl

// What is asked: the header, and under it the composer of the mode.
Item {
    id: root

    required property DraftScreen screen

    function focusQuestion() {
        const decision = fields.item as SingleDecision;
        const bulk = fields.item as BulkComposer;
        const prompt = fields.item as PromptComposer;
        if (decision)
            decision.focusQuestion(0);
        else if (bulk)
            bulk.focusQuestion(0);
        else
            prompt.focusQuestion();
    }

    height: fields.y + fields.height

    ComposerHeader {
        id: header

        width: root.width
        screen: root.screen
    }

    Loader {
        id: fields

        y: header.height + 20
        width: root.width
        sourceComponent: root.screen.mode === DraftScreen.Decision ? decision
                       : root.screen.mode === DraftScreen.Bulk ? bulk : prompt
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: decision

        SingleDecision {
            screen: root.screen
        }
    }
    Component {
        id: bulk

        BulkComposer {
            screen: root.screen
        }
    }
    Component {
        id: prompt

        PromptComposer {
            screen: root.screen
        }
    }
}
