import QtQuick
import Quorl

// The head of a column, which sorts by it. All heads of a table are one stop of the Tab key.
PlainButton {
    id: root

    required property ScoreTableModel table
    required property int column
    property bool isText
    property bool isTabStop: true

    readonly property bool isSorted: root.table.sortColumn === root.column

    text: root.table.heads[root.column]
    activeFocusOnTab: root.isTabStop
    onClicked: root.table.sortBy(root.column)

    Accessible.role: Accessible.ColumnHeader
    Accessible.description: root.isSorted ? root.table.sorting : ""

    Text {
        id: word

        width: parent.width
        height: parent.height
        text: root.text
        textFormat: Text.PlainText
        font: Theme.label
        color: root.isSorted ? Theme.accent : root.hovered ? Theme.text : Theme.quiet
        horizontalAlignment: root.isText ? Text.AlignLeft : Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Icon {
        x: root.isText ? word.contentWidth + 2 : parent.width - word.contentWidth - width - 2
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isSorted
        symbol: Symbols.chevronDown
        size: 14
        color: Theme.accent
        rotation: root.table.sortsDescending ? 0 : 180
    }

    FocusRing {
        anchors.margins: 2
        around: 4
        visible: root.visualFocus
    }
}
