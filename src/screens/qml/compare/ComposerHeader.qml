import QtQuick
import Quorl

// The mode at the left, the options of the comparison at the right.
Item {
    id: root

    required property DraftScreen screen

    height: Theme.controlHeight

    ModeMenu {
        x: -leftPadding
        width: Math.min(implicitWidth, root.width - options.width + leftPadding)
        screen: root.screen
    }

    IconButton {
        id: options

        anchors { right: root.right; rightMargin: -6 } // the symbol, not its room, stands at the edge
        symbol: Symbols.sliderHorizontal3
        helpText: qsTr("Comparison options")
        isActive: popover.active
        onClicked: popover.toggle()
    }

    PopoverLoader {
        id: popover

        Component.onCompleted: setSource(Qt.resolvedUrl("ComparisonOptions.qml"), { anchorItem: options, screen: root.screen })
    }
}
