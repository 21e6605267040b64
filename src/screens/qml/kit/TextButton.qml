import QtQuick
import QtQuick.Templates as T
import Quorl

// A button of words alone. Whoever places it pulls it out by its padding, so that the words align.
T.Button {
    id: root

    property color color: Theme.accent
    property string leadingSymbol
    property string helpText

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    leftPadding: 8
    rightPadding: 8
    opacity: enabled ? 1 : Theme.disabledOpacity
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.text
    Accessible.description: root.helpText

    HelpText {
        text: root.helpText
        wanted: root.hovered
    }

    contentItem: ButtonLabel {
        text: root.text
        color: root.color
        leadingSymbol: root.leadingSymbol
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down ? Theme.press : root.hovered ? Theme.hover : "transparent"

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
