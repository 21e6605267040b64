import QtQuick
import Quorl

// One of the segments.
BaseButton {
    id: root

    required property string symbol
    required property bool isOn
    required property bool isTabStop

    signal moved(int step)

    focusPolicy: root.isTabStop ? Qt.StrongFocus : Qt.ClickFocus
    opacity: 1 // all of them fade together
    padding: 4
    Keys.onLeftPressed: root.moved(-1)
    Keys.onUpPressed: root.moved(-1)
    Keys.onRightPressed: root.moved(1)
    Keys.onDownPressed: root.moved(1)

    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: root.isOn

    contentItem: ButtonLabel {
        text: root.text
        font: root.isOn ? Theme.button : Theme.control
        color: root.isOn ? Theme.text : Theme.quiet
        leadingSymbol: root.symbol
        symbolColor: root.isOn ? Theme.accent : Theme.quiet
        symbolSize: 18
    }

    background: Rectangle {
        radius: Theme.controlRadius - 1
        color: root.isOn ? Theme.surface : root.down ? Theme.press : root.hovered ? Theme.hover : "transparent"
        border.color: Theme.line
        border.width: root.isOn ? 1 : 0

        Behavior on color {
            ColorAnimation { duration: 120 }
        }

        FocusRing {
            around: parent.radius
            visible: root.visualFocus
        }
    }
}
