import QtQuick
import Quorl

// What opens the menu of a picker, and shows what is chosen.
PlainButton {
    id: root

    required property string placeholder
    required property bool inForm

    readonly property bool isEmpty: root.text === ""

    signal asked

    implicitWidth: label.implicitWidth + (root.inForm ? 2 : 20)
    implicitHeight: Theme.controlHeight
    onClicked: root.asked()
    Keys.onDownPressed: root.asked()
    Keys.onUpPressed: root.asked()

    Accessible.role: Accessible.ComboBox
    Accessible.description: root.text

    FieldRule {
        anchors.fill: parent
        visible: root.inForm
        isFocused: root.visualFocus || root.isOpen
        isHovered: root.hovered
    }

    ButtonFace {
        anchors.fill: parent
        visible: !root.inForm
        isHovered: root.hovered
        isDown: root.down || root.isOpen
        hasRing: root.visualFocus && !root.isOpen
        rest: Qt.alpha(Theme.raised, 0)
        lit: Theme.raised
        pressed: Theme.raised
        border.color: root.isOpen ? "transparent" : root.down ? Theme.muted : Theme.pencil
    }

    ButtonLabel {
        id: label

        x: root.inForm ? 0 : 12
        width: root.width - x - (root.inForm ? 2 : 8)
        height: root.height
        text: root.isEmpty ? root.placeholder : root.text
        font: root.inForm ? Theme.body : Theme.control
        color: root.isEmpty ? Theme.quiet : Theme.text
        symbolColor: Theme.quiet
        trailingSymbol: Symbols.chevronDown
        isSpread: true
    }
}
