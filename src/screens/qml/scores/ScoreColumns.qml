pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quorl

// The columns beside the models, which scroll sideways where there is no room for them.
Flickable {
    id: root

    required property ScoreTableModel table
    required property var columns
    required property var widths
    required property int headHeight
    required property int headColumn

    signal headFocused(head: ScoreHead)
    signal leftAtStart // from the first of the heads

    function focusHead(column: int) {
        const place = root.columns.indexOf(column);
        if (place >= 0)
            heads.itemAt(place).forceActiveFocus(Qt.TabFocusReason);
        else if (column < root.columns[0])
            root.leftAtStart();
    }

    function reveal(head: ScoreHead) {
        root.contentX = Math.max(head.x + head.width - root.width, Math.min(root.contentX, head.x));
    }

    height: figures.height + (root.contentWidth > root.width ? 8 : 0)
    contentWidth: figures.width
    pixelAligned: true
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.HorizontalFlick
    interactive: root.contentWidth > root.width
    clip: root.interactive

    Column {
        id: figures

        Row {
            Repeater {
                id: heads

                model: root.columns

                ScoreHead {
                    id: head

                    required property int modelData

                    width: root.widths[head.modelData]
                    height: root.headHeight
                    table: root.table
                    column: head.modelData
                    isText: head.modelData === ScoreTableModel.Category
                    isTabStop: root.headColumn === head.column
                    onActiveFocusChanged: {
                        root.headFocused(head);
                        if (activeFocus)
                            root.reveal(head);
                    }
                    Keys.onLeftPressed: root.focusHead(head.column - 1)
                    Keys.onRightPressed: root.focusHead(head.column + 1)
                }
            }
        }

        Repeater {
            model: root.table

            ScoreFigures {
                columns: root.columns
                widths: root.widths
            }
        }
    }

    T.ScrollBar.horizontal: PaneScrollBar {
        orientation: Qt.Horizontal
    }
}
