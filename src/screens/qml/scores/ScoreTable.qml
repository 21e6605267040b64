pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// One score table. Where it is too narrow the figures scroll sideways beside the models.
Item {
    id: root

    required property ScoreTableModel table
    property string title
    property string symbol

    readonly property bool isNarrow: root.width < 760
    readonly property real modelWidth: root.isNarrow ? Math.min(176, Math.round(root.width * 0.4)) : root.table.hasCategories ? 176 : 368
    readonly property var columns: root.table.hasCategories ? [1, 2, 3, 4, 5, 6, 7] : [2, 3, 4, 5, 6, 7]
    readonly property real figuresWidth: (root.table.hasCategories ? 192 : 0) + 72 + 128 + 88 + 80 + 88
    readonly property real tokensWidth: Math.max(148, root.width - root.modelWidth - root.figuresWidth)
    readonly property var widths: [root.modelWidth, 192, 72, 128, 88, 80, 88, root.tokensWidth]
    readonly property int headHeight: 32
    property int headColumn // where Tab goes; Left and Right move from head to head

    function headFocused(head: ScoreHead) {
        if (head.activeFocus)
            root.headColumn = head.column;
    }

    implicitHeight: root.table.count > 0 ? models.y + root.headHeight + root.table.count * Theme.rowHeight
                                         : nothing.y + nothing.height

    Accessible.role: Accessible.Table
    Accessible.name: root.title

    Row {
        id: heading

        spacing: 8

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.symbol
            size: 18
            color: Theme.quiet
        }

        Text {
            text: root.title
            textFormat: Text.PlainText
            font: Theme.section
            color: Theme.text

            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
    }

    Words {
        id: nothing

        y: 32
        visible: root.table.count === 0
        text: qsTr("Nothing in this slice yet.")
        font: Theme.body
        color: Theme.quiet
    }

    Repeater {
        model: root.table.count + 1

        Hairline {
            required property int index

            y: models.y + root.headHeight + index * Theme.rowHeight - 1
            width: root.width
            visible: root.table.count > 0
            color: index === 0 ? Theme.pencil : Theme.line
        }
    }

    Column {
        id: models

        y: 32
        visible: root.table.count > 0

        ScoreHead {
            id: modelHead

            width: root.modelWidth
            height: root.headHeight
            table: root.table
            column: ScoreTableModel.Model
            isText: true
            isTabStop: root.headColumn === column
            onActiveFocusChanged: root.headFocused(modelHead)
            Keys.onRightPressed: columns.focusHead(root.columns[0])
        }

        Repeater {
            model: root.table

            Text {
                required property var cells
                required property string spoken

                width: root.modelWidth - 12
                height: Theme.rowHeight
                text: cells[ScoreTableModel.Model]
                textFormat: Text.PlainText
                font: Theme.button
                color: Theme.text
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight

                Accessible.role: Accessible.Row
                Accessible.name: spoken
            }
        }
    }

    ScoreColumns {
        id: columns

        x: root.modelWidth
        y: models.y
        width: root.width - x
        visible: root.table.count > 0
        table: root.table
        columns: root.columns
        widths: root.widths
        headHeight: root.headHeight
        headColumn: root.headColumn
        onHeadFocused: head => root.headFocused(head)
        onLeftAtStart: modelHead.forceActiveFocus(Qt.TabFocusReason)
    }
}
