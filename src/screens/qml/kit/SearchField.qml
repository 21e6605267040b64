import QtQuick
import Quorl

// A field that looks for what is written in it. Esc empties it.
LineField {
    id: root

    property string accessibleName: root.placeholderText

    signal edited(string text)

    function empty() {
        root.text = "";
        root.edited("");
    }

    implicitWidth: 280
    implicitHeight: Theme.primaryHeight
    leftPadding: 38
    rightPadding: 12
    onTextEdited: root.edited(text)
    Keys.onEscapePressed: event => {
        event.accepted = root.text !== "";
        if (event.accepted)
            root.empty();
    }

    Accessible.name: root.accessibleName
    Accessible.searchEdit: true

    Icon {
        x: 13
        anchors.verticalCenter: parent.verticalCenter
        symbol: Symbols.magnifyingglass
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.color: root.activeFocus ? Theme.accent : root.hovered ? Theme.muted : Theme.line
        border.width: root.activeFocus ? 2 : 1
    }
}
