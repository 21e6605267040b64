import QtQuick
import Quorl

// Past comparisons and the search for them.
Item {
    id: root

    required property HistoryScreen screen

    readonly property int padding: root.width < 500 ? 20 : 32
    readonly property real contentWidth: Math.min(root.width - 2 * root.padding, 880)

    PageHeader {
        id: head

        x: root.padding
        y: 28
        width: root.contentWidth
        title: qsTr("History")
        subtitle: qsTr("Reopen a comparison or start a variation.")
    }

    SearchField {
        id: field

        x: root.padding
        anchors { top: head.bottom; topMargin: 24 }
        width: Math.min(420, root.contentWidth)
        placeholderText: qsTr("Search history")
        accessibleName: qsTr("Search comparison history")
        onEdited: text => {
            root.screen.search(text);
            list.goToTop();
        }
    }

    EmptyPane {
        x: root.padding
        anchors { top: field.bottom; topMargin: 24 }
        width: root.contentWidth
        visible: root.screen.emptyTitle !== ""
        title: root.screen.emptyTitle
        message: root.screen.emptyMessage
        symbol: Symbols.named(root.screen.emptySymbol)
    }

    HistoryList {
        id: list

        anchors { top: field.bottom; topMargin: 12; bottom: parent.bottom }
        width: root.width
        inset: root.padding
        rowWidth: root.contentWidth
        screen: root.screen
    }
}
