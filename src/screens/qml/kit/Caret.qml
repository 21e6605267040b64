import QtQuick
import Quorl

// Where the next letter goes. It stands still for a moment whenever it has moved.
Rectangle {
    id: root

    required property bool isShown
    required property int place

    property bool isLit: true

    width: 2
    visible: root.isShown && root.isLit
    color: Theme.accent
    onPlaceChanged: {
        root.isLit = true;
        blinking.restart();
    }

    Timer {
        id: blinking

        // The linter knows the hints as a bare object.
        // qmllint disable type
        interval: Qt.styleHints.cursorFlashTime / 2
        // qmllint enable type
        running: root.isShown && interval > 0
        repeat: true
        onTriggered: root.isLit = !root.isLit
    }
}
