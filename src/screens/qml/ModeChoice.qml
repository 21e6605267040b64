import QtQuick
import Quorl

// The kinds of comparison.
Row {
    id: root

    required property DraftScreen screen

    spacing: 8

    Segment {
        text: qsTr("Decision")
        checked: root.screen.mode === DraftScreen.Decision
        onClicked: root.screen.chooseMode(DraftScreen.Decision)
    }
    Segment {
        text: qsTr("Ask models")
        checked: root.screen.mode === DraftScreen.Generation
        onClicked: root.screen.chooseMode(DraftScreen.Generation)
    }
}
