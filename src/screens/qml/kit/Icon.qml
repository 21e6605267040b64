import QtQuick
import Quorl

// A symbol. What it means is said by the control that it stands in.
Text {
    id: root

    required property string symbol
    property int size: 16

    readonly property bool isRinged: root.symbol === Symbols.ellipsisCircle

    width: root.size
    height: root.size
    text: root.symbol.charAt(0)
    textFormat: Text.PlainText
    font.family: Symbols.fontFamily
    font.pixelSize: root.isRinged ? Math.round(root.size * 0.72) : root.size
    color: Theme.quiet
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter

    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        visible: root.isRinged
        radius: width / 2
        color: "transparent"
        border.color: root.color
        border.width: 1.5
    }
}
