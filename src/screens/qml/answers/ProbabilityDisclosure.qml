import QtQuick
import Quorl

// The three most probable answers, as long as the pointer rests here, or until the next press.
IconButton {
    id: root

    required property var signalRows // {label, percent}, highest first

    property bool isPinned: false
    property bool isRested: false // the pointer has been here for a while
    readonly property bool isOpen: root.isPinned || root.isRested

    size: Theme.smallHeight
    symbol: Symbols.chartBarXaxis
    isActive: root.isOpen
    accessibleName: qsTr("Top choice probabilities")
    onClicked: root.isPinned = !root.isPinned
    onHoveredChanged: root.isRested = root.isRested && root.hovered
    onActiveFocusChanged: root.isPinned = root.isPinned && root.activeFocus
    Keys.onEscapePressed: event => {
        event.accepted = root.isOpen;
        root.isPinned = false;
        root.isRested = false;
    }

    Accessible.description: qsTr("Hover or press to view the top three probabilities")

    Timer {
        interval: 150
        running: root.hovered && !root.isRested
        onTriggered: root.isRested = true
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Loader {
        active: root.isOpen
        sourceComponent: ProbabilitiesPopover {
            anchorItem: root
            signalRows: root.signalRows
        }
    }
}
