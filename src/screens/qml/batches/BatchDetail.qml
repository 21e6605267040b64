import QtQuick
import Quorl

// The selected batch and its items.
Column {
    id: root

    required property BatchesScreen screen

    spacing: 12

    PageHeader {
        width: root.width
        title: root.screen.title
        subtitle: root.screen.subtitle

        SecondaryButton {
            text: qsTr("Delete")
            isDestructive: true
            onClicked: root.screen.requestDelete()
        }
    }

    Words {
        width: root.width
        visible: root.screen.progress !== ""
        text: root.screen.progress
        font: Theme.label
        color: Theme.accent
    }

    Words {
        width: root.width
        visible: items.count === 0
        text: qsTr("This batch has no items.")
        font: Theme.body
        color: Theme.quiet
    }

    BatchItemList {
        id: items

        width: root.width
        screen: root.screen
    }
}
