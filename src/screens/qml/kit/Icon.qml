import QtQuick
import Quorl

// A symbol. What it means is said by the control that it stands in.
Text {
    id: root

    required property string symbol
    property int size: 16

    width: root.size
    height: root.size
    text: root.symbol
    textFormat: Text.PlainText
    font.family: Symbols.fontFamily
    font.pixelSize: root.size
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter

    Accessible.ignored: true
}
