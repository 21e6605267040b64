import QtQuick
import Quorl

// Whom to ask, the run button, and what stands in its way. In a narrow place one button is under the other.
Item {
    id: root

    required property DraftScreen screen

    readonly property bool isNarrow: root.width < 320

    function openModels() {
        models.openPopover();
    }

    height: compare.y + compare.height + (validation.visible ? validation.height + 12 : 0)

    ModelSelector {
        id: models

        width: root.isNarrow ? root.width : root.width - compare.width - 12
        screen: root.screen
    }

    PrimaryButton {
        id: compare

        x: root.width - width
        y: root.isNarrow ? models.height + 12 : 0
        width: root.isNarrow ? root.width : implicitWidth
        text: root.screen.runLabel
        symbol: Symbols.arrowRight
        onClicked: root.screen.compare()
    }

    ProblemLine {
        id: validation

        y: compare.y + compare.height + 12
        width: root.width
        visible: root.screen.validation !== ""
        text: root.screen.validation
    }
}
