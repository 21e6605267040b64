import QtQuick
import Quorl

ListAndDetail {
    id: root

    required property BatchesScreen screen

    listHeight: batches.shortHeight
    detailHeight: detail.height

    list: BatchList {
        id: batches

        anchors.fill: parent
        screen: root.screen
    }

    detail: Column {
        id: detail

        width: parent.width
        spacing: 28

        ConnectionPanel {
            width: detail.width
            screen: root.screen
        }

        BatchDetail {
            width: detail.width
            visible: root.screen.hasBatch
            screen: root.screen
        }

        EmptyPane {
            width: detail.width
            visible: !root.screen.hasBatch
            title: qsTr("No batch open")
            message: qsTr("POST /v1/batches with the token above. Finished items stay in this list, and each one opens as a comparison.")
            symbol: Symbols.tray
        }
    }
}
