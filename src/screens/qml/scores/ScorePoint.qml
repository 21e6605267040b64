import QtQuick
import Quorl

// A model in the picture, with its name and what its quality rests on.
Item {
    id: root

    required property string name
    required property double quality
    required property double timePlace
    required property double costPlace
    required property double timeLabel
    required property double costLabel
    required property string detail
    required property string spoken
    property Item space
    property bool isCost

    readonly property double place: root.isCost ? root.costPlace : root.timePlace
    readonly property bool isAtRight: root.place > 0.6

    x: root.space.width * Math.max(0, root.place)
    y: root.space.height * (1 - root.quality)
    visible: root.place >= 0

    Accessible.role: Accessible.StaticText
    Accessible.name: root.spoken

    Rectangle {
        x: -5
        y: -5
        width: 10
        height: 10
        radius: 5
        color: Theme.surface
        border { color: Theme.accent; width: 3 }
    }

    Text {
        x: root.isAtRight ? -10 - width : 10
        y: root.space.height * (root.isCost ? root.costLabel : root.timeLabel) - root.y - height / 2
        width: Math.min(implicitWidth, root.space.width * 0.6 - 12)
        text: root.name + "  " + root.detail
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.text
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
