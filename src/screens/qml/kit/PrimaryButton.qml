import QtQuick
import QtQuick.Templates as T
import Quorl

// The one main action of a view.
T.Button {
    id: root

    property string trailingSymbol

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.primaryHeight
    leftPadding: 16
    rightPadding: 16
    opacity: enabled ? 1 : Theme.disabledOpacity
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.text

    contentItem: ButtonLabel {
        text: root.text
        color: Theme.surface
        trailingSymbol: root.trailingSymbol
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down || root.hovered ? Theme.accentHover : Theme.accent

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
