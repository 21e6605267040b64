import QtQuick
import Quorl

// What opens the menu of a picker, and shows what is chosen.
PlainButton {
    id: root

    required property string placeholder
    required property bool inForm
    required property bool isOpen

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

    Rectangle {
        anchors.fill: parent
        visible: !root.inForm
        radius: Theme.controlRadius
        color: root.isOpen || root.down || root.hovered ? Theme.raised : "transparent"
        border.color: root.isOpen ? "transparent" : root.down ? Theme.muted : Theme.pencil

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus && !root.isOpen
        }
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
