import QtQuick
import Quorl

// Keeps an answer in the dataset. The bookmark beats once when that has happened.
BaseButton {
    id: root

    property bool saved
    property real symbolScale: 1
    property bool isMade: false // what was in the dataset before is no news

    text: root.saved ? qsTr("Saved to dataset") : qsTr("Save to dataset")
    leftPadding: 8
    rightPadding: 8
    onSavedChanged: {
        if (root.saved && root.isMade && Motion.isAllowed)
            beat.restart();
    }
    Component.onCompleted: root.isMade = true

    SequentialAnimation {
        id: beat

        NumberAnimation { target: root; property: "symbolScale"; to: 1.15; duration: 120 }
        NumberAnimation { target: root; property: "symbolScale"; to: 1; duration: 120 }
    }

    contentItem: ButtonLabel {
        text: root.text
        font: Theme.label
        color: root.saved ? Theme.accent : Theme.quiet
        leadingSymbol: root.saved ? Symbols.bookmarkFill : Symbols.bookmark
        symbolScale: root.symbolScale
    }

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
    }
}
