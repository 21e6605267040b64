import QtQuick
import QtQuick.Templates as T
import Quorl

// One of a row of which one is on. Return presses it as Space does.
T.RadioButton {
    id: root

    property string symbol
    property string helpText

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted)
            root.clicked();
    }

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    leftPadding: 12
    rightPadding: 12
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.name: root.text !== "" ? root.text : root.helpText

    HelpText {
        text: root.helpText
        wanted: root.hovered
    }

    contentItem: ButtonLabel {
        text: root.text
        color: root.checked ? Theme.surface : Theme.text
        leadingSymbol: root.symbol
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.checked ? Theme.accent : root.down || root.hovered ? Theme.raised : "transparent"
        border.color: root.checked ? Theme.accent : Theme.pencil

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
