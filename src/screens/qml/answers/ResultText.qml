import QtQuick
import Quorl

// A typed answer, and behind it how sure the model is of it and of the others.
Item {
    id: root

    required property var result

    readonly property real taken: probabilities.visible ? probabilities.width + 8 : 0

    height: Math.max(Math.ceil(words.height), probabilities.visible ? 28 : 0)

    TextMetrics {
        id: natural

        font: words.font
        text: words.text
    }

    SelectableText {
        id: words

        width: Math.min(root.width - root.taken, Math.ceil(natural.advanceWidth) + 2)
        height: implicitHeight
        y: 1
        activeFocusOnTab: false
        text: root.result.answer
        font: Theme.answer
        line: Theme.answerLine
    }

    ProbabilityDisclosure {
        id: probabilities

        x: words.width + 8
        visible: root.result.signals.length > 0
        signalRows: root.result.signals
    }
}
