pragma ComponentBehavior: Bound

import QtQuick
import Quorl

RecordList {
    id: root

    required property HistoryScreen screen

    model: root.screen.runs
    bottomMargin: 24

    Accessible.name: qsTr("History")

    delegate: HistoryRow {
        menu: actions
        onClicked: root.screen.open(runID)
    }

    HistoryMenu {
        id: actions

        screen: root.screen
    }
}
