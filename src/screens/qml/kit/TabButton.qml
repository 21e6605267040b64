import QtQuick
import QtQuick.Templates as T
import Quorl

// What the destinations share, in the rail and in the toolbar. Which one is on is told, not pressed.
T.TabButton {
    id: root

    property string title
    property bool selected
    property string helpText

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted && !event.isAutoRepeat)
            root.clicked();
    }

    text: root.title
    checkable: false
    autoExclusive: false
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.name: root.title
    Accessible.selectable: true
    Accessible.selected: root.selected
    Accessible.onPressAction: if (root.enabled) root.clicked()

    HelpText {
        text: root.helpText
        wanted: root.hovered && !root.down
    }
}
