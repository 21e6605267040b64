import QtQuick
import QtQuick.Templates as T
import Quorl

// One of the two thumbs. Whether it is on is for the model to say, so a press alone changes nothing here.
T.CheckBox {
    id: root

    property bool isUp: true
    property string helpText
    property string accessibleName: root.helpText
    property int size: Theme.controlHeight

    function pressByKey(event: KeyEvent) {
        event.accepted = !(event.modifiers & Qt.ControlModifier); // which belongs to the run button
        if (event.accepted && !event.isAutoRepeat)
            root.clicked();
    }

    implicitWidth: root.size
    implicitHeight: root.size
    padding: 0
    opacity: enabled ? 1 : Theme.disabledOpacity
    nextCheckState: () => root.checkState
    hoverEnabled: true
    Keys.onReturnPressed: event => root.pressByKey(event)
    Keys.onEnterPressed: event => root.pressByKey(event)

    Accessible.name: root.accessibleName
    Accessible.checkable: true
    Accessible.checked: root.checked
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Accessible.onToggleAction: if (root.enabled) root.clicked()

    HelpText {
        text: root.helpText
        wanted: root.hovered && !root.down
    }

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: root.isUp ? (root.checked ? Symbols.handThumbsupFill : Symbols.handThumbsup)
                              : (root.checked ? Symbols.handThumbsdownFill : Symbols.handThumbsdown)
            size: 18
            color: root.checked ? Theme.accent : Theme.quiet
        }
    }

    background: ButtonFace {
        isHovered: root.hovered
        isDown: root.down
        hasRing: root.visualFocus
        radius: root.size < Theme.controlHeight ? Theme.smallRadius : Theme.controlRadius
    }
}
