import QtQuick
import Quorl

// The program's mark, which leads to the Compare screen.
BaseButton {
    id: root

    property string words
    property int size: 24

    implicitHeight: root.words === "" ? 40 : Theme.primaryHeight
    implicitWidth: root.words === "" ? 40 : implicitContentWidth + leftPadding + rightPadding
    leftPadding: root.words === "" ? 6 : 12
    rightPadding: leftPadding
    helpText: qsTr("Comparison workspace")
    accessibleName: qsTr("Quorl")

    // Shown from the start, so nothing is gained by making it later.
    // qmllint disable deferred-property-id
    contentItem: Item {
        implicitWidth: root.words === "" ? root.size : name.x + name.implicitWidth

        QuorlMark {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            size: root.size
        }
        Text {
            id: name

            x: root.size + 12
            visible: root.words !== ""
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: root.words
            textFormat: Text.PlainText
            font { family: Theme.pane.family; pixelSize: Theme.pane.pixelSize; weight: Font.Bold; letterSpacing: Theme.pane.letterSpacing }
            color: Theme.text
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down ? Theme.press : root.hovered ? Theme.hover : "transparent"

        FocusRing {
            around: Theme.controlRadius
            visible: root.visualFocus
        }
    }
}
