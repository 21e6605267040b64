pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quorl

// The models to choose from: one stop of the Tab key, Up and Down move, Space switches.
ListView {
    id: root

    signal toggled(string modelID)

    height: Math.min(contentHeight, 6 * Theme.rowHeight)
    clip: contentHeight > height
    interactive: clip
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: true
    currentIndex: 0

    Accessible.role: Accessible.List

    delegate: CheckRow {
        id: row

        required property int index
        required property string modelID
        required property string modelName
        required property bool chosen
        required property bool ready
        required property string obstacle

        width: ListView.view.width
        text: row.modelName
        detail: row.obstacle
        enabled: row.ready
        checked: row.chosen
        focusPolicy: Qt.ClickFocus
        isMarked: ListView.isCurrentItem && root.activeFocus && row.focusReason !== Qt.MouseFocusReason
        onPressed: root.currentIndex = row.index
        // The model decides what is chosen; a check mark that the click has set would hide its decision.
        nextCheckState: () => row.checkState
        onClicked: root.toggled(row.modelID)
    }

    T.ScrollBar.vertical: PaneScrollBar {}
}
