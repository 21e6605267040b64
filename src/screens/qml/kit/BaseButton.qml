import QtQuick
import QtQuick.Templates as T
import Quorl

// What all buttons share: Return presses them as Space does, and they fade when disabled.
T.Button {
    id: root

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted)
            root.clicked();
    }

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    opacity: enabled ? 1 : Theme.disabledOpacity
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.name: root.text
}
