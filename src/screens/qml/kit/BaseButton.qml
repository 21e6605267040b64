import QtQuick
import QtQuick.Templates as T
import Quorl

// What all buttons share: Return presses them as Space does, they fade when disabled and then still explain themselves.
T.Button {
    id: root

    property string helpText
    property string accessibleName
    property bool wantsHelp: root.hovered && !root.down
    property bool isHelpHasty

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted && !event.isAutoRepeat)
            root.clicked();
    }

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true // for the help text, also where a platform has no effects under the pointer
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.name: root.accessibleName !== "" ? root.accessibleName : root.text !== "" ? root.text : root.helpText
    Accessible.description: root.helpText !== Accessible.name ? root.helpText : ""
    Accessible.onPressAction: if (root.enabled) root.clicked()

    HelpText {
        text: root.helpText
        wanted: root.wantsHelp
        isHasty: root.isHelpHasty
    }
}
