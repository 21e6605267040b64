import QtQuick
import Quorl

// A figure behind its label.
Item {
    id: root

    required property string label
    required property string value

    height: Theme.controlLine

    Accessible.role: Accessible.StaticText
    Accessible.name: root.label + root.value

    Text {
        id: name

        width: Math.max(72, implicitWidth)
        height: root.height
        text: root.label
        textFormat: Text.PlainText
        font: Theme.control
        color: Theme.quiet
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    Text {
        x: name.width
        width: root.width - x
        height: root.height
        text: root.value
        textFormat: Text.PlainText
        font: Theme.control
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
