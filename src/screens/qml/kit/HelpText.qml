import QtQuick
import Quorl

// Explains the control that it lies in, while the pointer is over it. Made only when it may be needed at once.
Loader {
    id: root

    required property string text
    required property bool wanted
    property bool isHasty // without the wait

    active: root.text !== "" && (root.wanted || !root.parent.enabled)

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    sourceComponent: HelpBubble {
        control: root.parent
        text: root.text
        isWanted: root.wanted
        isHasty: root.isHasty
    }
}
