import QtQuick
import Quorl

// What can be done with a comparison. One menu serves all rows; the one that opens it is told by its run.
Menu {
    id: root

    required property HistoryScreen screen

    property string runID

    minimumWidth: 184

    MenuEntry {
        text: qsTr("Open comparison")
        onTriggered: root.screen.open(root.runID)
    }
    MenuEntry {
        text: qsTr("Run a variation")
        onTriggered: root.screen.vary(root.runID)
    }
    MenuEntry {
        text: qsTr("Delete")
        isDestructive: true
        onTriggered: root.screen.requestDelete(root.runID)
    }
}
