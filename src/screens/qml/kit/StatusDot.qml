import QtQuick
import Quorl

// Whether a model can be asked, by its `state`: "ready", "disabled" or "blocked". The two blues differ by the ring.
Item {
    id: root

    property string helpText

    implicitWidth: 8
    implicitHeight: 8

    Accessible.role: Accessible.Indicator
    Accessible.name: root.helpText
    Accessible.ignored: root.helpText === ""

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: root.state === "ready" ? Theme.accent : root.state === "disabled" ? Theme.border : "transparent"
        border.color: Theme.accent
        border.width: root.state === "blocked" ? 2 : 0
    }

    // The dot is small: what is around it counts as it.
    Item {
        id: around

        anchors.centerIn: parent
        width: 24
        height: 24

        HoverHandler {
            id: pointer
        }

        HelpText {
            text: root.helpText
            wanted: pointer.hovered
        }
    }
}
