import QtQuick
import Quorl

Item {
    id: root

    required property DraftScreen screen

    height: Theme.controlHeight

    PaneTitle {
        id: title

        text: qsTr("Answers")
    }

    Words {
        anchors { left: title.right; leftMargin: 10; baseline: title.baseline }
        visible: root.screen.hasRun
        text: root.screen.finishedCount
        font: Theme.caption
        color: Theme.quiet
    }

    TextButton {
        anchors { right: parent.right; rightMargin: -rightPadding }
        visible: root.screen.hasRun
        text: qsTr("Reset")
        color: Theme.quiet
        leadingSymbol: Symbols.arrowCounterclockwise
        helpText: qsTr("Return to the question and hide the current answers. Your setup stays in place.")
        onClicked: root.screen.reset()

        Accessible.name: qsTr("Reset comparison")
    }
}
