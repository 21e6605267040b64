import QtQuick
import QtQuick.Templates as T
import Quorl

// On or off, at once. The words stand behind the switch, or before it in a list.
T.Switch {
    id: root

    property string detail
    property string helpText
    property bool isTrailing // the switch at the right, as in a list

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted && !event.isAutoRepeat)
            root.press();
    }

    function press() {
        root.toggle(); // which is silent
        root.toggled();
        root.clicked();
    }

    implicitWidth: 36 + (root.text !== "" ? 12 + contentItem.implicitWidth : 0)
    implicitHeight: Math.max(root.isTrailing ? Theme.rowHeight : Theme.controlHeight, contentItem.implicitHeight + 12)
    leftPadding: root.isTrailing ? 0 : 48
    rightPadding: root.isTrailing ? 48 : 0
    hoverEnabled: true
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.role: Accessible.CheckBox
    Accessible.name: root.text
    Accessible.description: root.detail !== "" ? root.detail : root.helpText
    Accessible.checkable: true
    Accessible.checked: root.checked
    Accessible.onPressAction: if (root.enabled) root.press()
    Accessible.onToggleAction: if (root.enabled) root.press()

    HelpText {
        text: root.helpText
        wanted: root.hovered
    }

    contentItem: CheckRowLabel {
        text: root.text
        detail: root.detail
        enabled: root.enabled
    }

    indicator: SwitchTrack {
        x: root.isTrailing ? root.width - width : 0
        y: (root.height - height) / 2
        isOn: root.checked
        isHovered: root.hovered
        opacity: root.enabled ? 1 : Theme.disabledOpacity

        FocusRing {
            around: 10
            visible: root.visualFocus
        }
    }
}
