import QtQuick
import Quorl

// A text whose figures have one width, for columns of numbers.
Item {
    id: root

    property string text
    property font font: Theme.control
    property color color: Theme.text
    property int horizontalAlignment: Text.AlignRight

    implicitWidth: Math.ceil(drawn.implicitWidth)
    implicitHeight: Theme.controlLine

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    Text {
        id: drawn

        anchors.fill: parent
        text: Numerals.tabular(root.text)
        textFormat: Text.PlainText
        font: root.font
        color: root.color
        horizontalAlignment: root.horizontalAlignment
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
