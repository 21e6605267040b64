pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The cells of a row beside its model.
Row {
    id: root

    required property var cells
    property var columns
    property var widths

    Repeater {
        model: root.columns

        Item {
            id: cell

            required property int modelData

            readonly property bool isCategory: cell.modelData === ScoreTableModel.Category

            width: root.widths[cell.modelData]
            height: Theme.rowHeight

            FigureText {
                width: cell.width - (cell.isCategory ? 12 : 0)
                height: cell.height
                text: root.cells[cell.modelData]
                color: cell.isCategory ? Theme.quiet : Theme.text
                horizontalAlignment: cell.isCategory ? Text.AlignLeft : Text.AlignRight

                Accessible.role: Accessible.Cell
            }
        }
    }
}
