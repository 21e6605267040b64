import QtQuick
import QtQuick.Templates as T
import Quorl

// A choice that is on or off, with a line of detail under its name.
T.CheckBox {
    id: root

    property string detail
    property string helpText

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

    implicitWidth: leftPadding + contentItem.implicitWidth
    implicitHeight: Math.max(Theme.controlHeight, contentItem.implicitHeight + 12)
    leftPadding: 28
    hoverEnabled: true
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.name: root.text
    Accessible.description: root.detail !== "" ? root.detail : root.helpText
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

    indicator: CheckMark {
        y: (root.height - height) / 2
        isOn: root.checked
        isHovered: root.hovered
        opacity: root.enabled ? 1 : Theme.disabledOpacity

        FocusRing {
            around: 4
            visible: root.visualFocus
        }
    }
}
