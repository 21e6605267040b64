pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quorl

Popover {
    id: root

    required property var signalRows

    title: qsTr("Choice probabilities")
    panelWidth: 304
    takesKeys: false // the button keeps them, and closes it
    closePolicy: T.Popup.NoAutoClose
    edgeBeside: 20
    edgeAbove: 16
    spacing: 8
    visible: true

    Repeater {
        model: root.signalRows.slice(0, 3)

        Item {
            id: row

            required property var modelData
            required property int index

            width: root.panelWidth - 2 * root.edgeBeside
            height: Math.max(Theme.controlLine, label.height)

            Words {
                id: label

                width: bar.x - 12
                text: row.modelData.label
                font: row.index === 0 ? Theme.button : Theme.control
                color: Theme.text
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
            }
            ProbabilityBar {
                id: bar

                x: row.width - 48 - width
                width: 88
                anchors.verticalCenter: label.verticalCenter
                percent: row.modelData.percent
                isFirst: row.index === 0
                delay: 40 * row.index
                accessibleLabel: row.modelData.label
            }
            Text {
                anchors { right: row.right; verticalCenter: label.verticalCenter }
                text: row.modelData.percent + "%"
                textFormat: Text.PlainText
                font: row.index === 0 ? Theme.button : Theme.control
                color: Theme.text
                Accessible.ignored: true // the bar says it
            }
        }
    }
}
