import QtQuick
import Quorl

// What lies over the window: a rounded `surface` and the shadow under it.
Item {
    id: root

    property string shadow: "popover" // or "sheet", "toast"
    property int radius: Theme.cardRadius

    readonly property int reach: root.shadow === "sheet" ? 112 : root.shadow === "toast" ? 40 : 56
    readonly property int slice: root.reach + (root.shadow === "sheet" ? 20 : 16)

    BorderImage {
        anchors.fill: parent
        anchors.margins: -root.reach
        source: "../../icons/shadow-" + root.shadow + ".png"
        border { left: root.slice; top: root.slice; right: root.slice; bottom: root.slice }
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: Theme.surface
        border.color: Theme.line
        border.width: root.shadow === "sheet" ? 0 : 1
    }
}
