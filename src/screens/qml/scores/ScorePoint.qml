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
    required property bool isTimeLabelAtLeft
    required property bool isCostLabelAtLeft
    required property string detail
    required property string spoken
    property Item space
    property bool isCost

    readonly property double place: root.isCost ? root.costPlace : root.timePlace
    readonly property bool isAtLeft: root.isCost ? root.isCostLabelAtLeft : root.isTimeLabelAtLeft
    readonly property real room: root.space.width * Math.min(0.6, root.isAtLeft ? root.place : 1 - root.place) - 10

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

    // On paper of its own, or the lines of the picture would run through it.
    Rectangle {
        x: root.isAtLeft ? -10 - width : 10
        y: root.space.height * (root.isCost ? root.costLabel : root.timeLabel) - root.y - height / 2
        width: words.width
        height: words.height
        color: Theme.bg

        Row {
            id: words

            spacing: 6

            Text {
                width: Math.min(implicitWidth, Math.max(24, root.room - detail.implicitWidth - words.spacing))
                text: root.name
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.text
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Text {
                id: detail

                text: root.detail
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.quiet
                Accessible.ignored: true
            }
        }
    }
}
