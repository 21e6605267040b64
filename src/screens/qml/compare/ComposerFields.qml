import QtQuick
import Quorl

// What is asked: the header, and under it the composer of the mode, which is read from its file when it is first shown.
Item {
    id: root

    required property DraftScreen screen

    readonly property string file: root.screen.mode === DraftScreen.Decision ? "SingleDecision.qml"
                                 : root.screen.mode === DraftScreen.Bulk ? "BulkComposer.qml" : "PromptComposer.qml"

    function focusQuestion() {
        root.focusFirst(fields.item);
    }

    function focusFirst(composer: var) {
        composer.focusQuestion(0);
    }

    height: fields.y + fields.height
    onFileChanged: fields.setSource(Qt.resolvedUrl(root.file), { screen: root.screen })

    ComposerHeader {
        id: header

        width: root.width
        screen: root.screen
    }

    Loader {
        id: fields

        y: header.height + 20
        width: root.width
    }
}
