import QtQuick
import Quorl

// The batches that programs have made.
Item {
    id: root

    required property BatchesScreen screen

    readonly property real shortHeight: list.count > 0 ? list.y + Math.min(5, list.count) * (60 + list.spacing)
                                                       : list.y + none.height

    PageHeader {
        id: header

        width: root.width
        title: qsTr("Batches")
    }

    Words {
        x: heading.advanceWidth + 8
        y: 14
        height: Theme.captionLine
        text: qsTr("API")
        font: Theme.caption
        color: Theme.quiet
    }

    TextMetrics {
        id: heading

        text: header.title
        font: Theme.page
    }

    Words {
        id: none

        y: list.y
        width: root.width
        visible: list.count === 0
        text: qsTr("Batches submitted through the API show up here.")
        font: Theme.body
        color: Theme.muted
        wrapMode: Text.Wrap
        lineHeight: Theme.bodyLine
        lineHeightMode: Text.FixedHeight
    }

    SelectionList {
        id: list

        x: -12
        y: header.height + 20
        width: root.width + 12
        height: root.height - y
        model: root.screen.batches
        selectedRow: root.screen.selectedRow
        onRowSelected: row => root.screen.select(row)

        Accessible.name: qsTr("Batches")

        delegate: BatchRow {}
    }
}
