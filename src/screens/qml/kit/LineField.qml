import QtQuick
import QtQuick.Templates as T
import Quorl

// A field of one line on a rule.
T.TextField {
    id: root

    implicitHeight: Theme.controlHeight
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    persistentSelection: true
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.surface
    opacity: enabled ? 1 : Theme.disabledOpacity

    Accessible.name: root.placeholderText

    Text {
        anchors.fill: parent
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        textFormat: Text.PlainText
        font: root.font
        color: Theme.quiet
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    background: Item {
        Rectangle {
            width: parent.width
            height: root.activeFocus ? 2 : 1
            anchors.bottom: parent.bottom
            color: root.activeFocus ? Theme.accent : root.hovered ? Theme.muted : Theme.pencil
        }
    }
}
