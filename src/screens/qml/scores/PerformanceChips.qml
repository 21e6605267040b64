pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// What has been compared and judged so far, in figures.
Flow {
    id: root

    required property var chips

    readonly property int chipHeight: 56

    spacing: 0

    Repeater {
        model: root.chips

        Item {
            id: chip

            required property int index
            required property var modelData

            implicitWidth: Math.max(number.x + number.implicitWidth, label.implicitWidth) + (chip.index > 0 ? 24 : 0) + 40
            implicitHeight: root.chipHeight + (root.width < 460 ? 12 : 0) // where they stand in two rows

            Accessible.role: Accessible.StaticText
            Accessible.name: chip.modelData.value + " " + chip.modelData.label

            Rectangle {
                visible: chip.index > 0 && chip.x > 0
                width: 1
                height: root.chipHeight
                color: Theme.line
            }

            Item {
                id: words

                x: chip.x > 0 ? 24 : 0
                width: chip.width - x
                height: root.chipHeight

                Icon {
                    y: 9
                    symbol: Symbols[chip.modelData.symbol]
                    size: 18
                    color: Theme.quiet
                }

                Text {
                    id: number

                    x: 30
                    height: Theme.figureLine
                    text: chip.modelData.value
                    textFormat: Text.PlainText
                    font: Theme.figure
                    color: Theme.text
                    verticalAlignment: Text.AlignVCenter
                    Accessible.ignored: true
                }

                Text {
                    id: label

                    y: 38
                    text: chip.modelData.label
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: Theme.quiet
                    Accessible.ignored: true
                }
            }
        }
    }
}
