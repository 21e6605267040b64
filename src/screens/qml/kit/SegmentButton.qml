import QtQuick
import QtQuick.Templates as T
import Quorl

// One of the segments. Return presses it as Space does.
T.RadioButton {
    id: root

    required property string symbol
    required property string helpText
    required property bool isOn
    required property bool isTabStop
    required property string accessibleName

    signal moved(int step)

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted && !event.isAutoRepeat)
            root.clicked();
    }

    checked: root.isOn
    autoExclusive: false
    focusPolicy: root.isTabStop ? Qt.StrongFocus : Qt.ClickFocus
    padding: 4
    hoverEnabled: true
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)
    Keys.onLeftPressed: root.moved(-1)
    Keys.onUpPressed: root.moved(-1)
    Keys.onRightPressed: root.moved(1)
    Keys.onDownPressed: root.moved(1)

    Accessible.name: root.accessibleName !== "" ? root.accessibleName : root.helpText
    Accessible.description: root.helpText !== Accessible.name ? root.helpText : ""
    Accessible.checkable: true
    Accessible.checked: root.isOn
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Accessible.onToggleAction: if (root.enabled) root.clicked()

    HelpText {
        text: root.helpText
        wanted: root.hovered && !root.down
    }

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
