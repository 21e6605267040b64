import QtQuick
import Quorl

// Names the models that would be asked, and opens the choice of them.
SecondaryButton {
    id: root

    required property DraftScreen screen

    function openPopover() {
        popover.open();
    }

    isLarge: true
    isSpread: true
    elide: Text.ElideMiddle // the number at its end is to be seen
    isActive: popover.active
    text: root.screen.modelsLabel
    symbol: Symbols.chevronDown
    symbolAtEnd: true
    helpText: qsTr("Select the models to compare")
    onClicked: popover.toggle()

    PopoverLoader {
        id: popover

        Component.onCompleted: setSource(Qt.resolvedUrl("ModelsPopover.qml"), { anchorItem: root, screen: root.screen })
    }
}
