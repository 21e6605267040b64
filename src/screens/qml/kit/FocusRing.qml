import QtQuick
import Quorl

// Around a control that has the keyboard: 2 pixels wide, 2 off, following the corners.
Rectangle {
    id: root

    required property int around // the control's radius

    anchors.fill: parent
    anchors.margins: -4
    radius: root.around + 4
    color: "transparent"
    border.color: Theme.accent
    border.width: 2
}
