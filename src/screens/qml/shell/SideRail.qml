import QtQuick
import Quorl

// The way to the screens beside them. Up and Down move among the three main ones.
Rectangle {
    id: root

    required property RootScreen screens
    required property Menu tools

    implicitWidth: Theme.railWidth
    color: Theme.rail

    Rectangle {
        x: root.width - 1
        width: 1
        height: root.height
        color: Theme.line
    }

    MarkButton {
        x: 12
        y: 26
        width: entries.width
        words: qsTr("Quorl")
        onClicked: root.screens.goTo(RootScreen.Draft)
    }

    Column {
        id: entries

        x: 12
        y: 88
        width: root.width - 25
        spacing: 4

        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Screens")

        NavigationEntry {
            id: compare

            width: entries.width
            symbol: Symbols.rectangle3Group
            title: qsTr("Compare")
            selected: root.screens.destination === RootScreen.Draft
            KeyNavigation.down: history
            onClicked: root.screens.goTo(RootScreen.Draft)
        }
        NavigationEntry {
            id: history

            width: entries.width
            symbol: Symbols.clock
            title: qsTr("History")
            selected: root.screens.destination === RootScreen.History
            KeyNavigation.down: dataset
            onClicked: root.screens.goTo(RootScreen.History)
        }
        NavigationEntry {
            id: dataset

            width: entries.width
            symbol: Symbols.trayFull
            title: qsTr("Dataset")
            selected: root.screens.destination === RootScreen.Dataset
            onClicked: root.screens.goTo(RootScreen.Dataset)
        }
    }

    MenuButton {
        x: 12
        y: root.height - height - 16
        width: entries.width
        look: MenuButton.Look.Navigation
        symbol: Symbols.ellipsisCircle
        text: qsTr("Tools")
        helpText: qsTr("Models, performance, categories, and API batches")
        menu: root.tools
    }
}
