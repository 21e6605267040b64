pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// One of the two pictures: better is higher, and cheaper or faster is further left.
Item {
    id: root

    required property ScorePointListModel points
    required property string title
    required property string lowest
    required property string highest
    required property bool isCost

    implicitHeight: 280

    Accessible.role: Accessible.Chart
    Accessible.name: root.title

    FieldLabel {
        text: root.title
    }

    Item {
        id: field

        x: 40
        y: 32
        width: root.width - x - 12
        height: root.height - y - 28

        Repeater {
            model: [0, 50, 100]

            Item {
                id: level

                required property int modelData

                y: field.height * (1 - level.modelData / 100)
                width: field.width

                Hairline {
                    width: parent.width
                    color: level.modelData === 0 ? Theme.pencil : Theme.line
                }

                Text {
                    x: -8 - width
                    y: -height / 2
                    text: level.modelData + "%"
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: Theme.quiet
                    Accessible.ignored: true
                }
            }
        }

        Repeater {
            model: root.points

            ScorePoint {
                space: field
                isCost: root.isCost
            }
        }
    }

    Text {
        x: field.x
        y: root.height - height
        text: root.lowest
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.quiet
        Accessible.ignored: true
    }

    Text {
        x: field.x + field.width - width
        y: root.height - height
        visible: root.highest !== root.lowest
        text: root.highest
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.quiet
        Accessible.ignored: true
    }
}
