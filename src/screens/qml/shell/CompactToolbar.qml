import QtQuick
import Quorl

// The way to the screens in a narrow window, above them.
Rectangle {
    id: root

    required property RootScreen screens
    required property Menu tools

    implicitHeight: Theme.toolbarHeight
    color: Theme.rail

    Hairline {
        y: root.height - 1
        width: root.width
    }

    MarkButton {
        x: 14
        anchors.verticalCenter: root.verticalCenter
        size: 28
        onClicked: root.screens.goTo(RootScreen.Draft)
    }

    Row {
        anchors { right: tools.left; rightMargin: 4; verticalCenter: root.verticalCenter }
        spacing: 4

        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Screens")

        WorkspaceIcon {
            id: history

            symbol: Symbols.clock
            title: qsTr("History")
            selected: root.screens.destination === RootScreen.History
            KeyNavigation.right: dataset
            onClicked: root.screens.goTo(RootScreen.History)
        }
        WorkspaceIcon {
            id: dataset

            symbol: Symbols.folder
            title: qsTr("Dataset")
            selected: root.screens.destination === RootScreen.Dataset
            onClicked: root.screens.goTo(RootScreen.Dataset)
        }
    }

    MenuButton {
        id: tools

        anchors { right: root.right; rightMargin: 12; verticalCenter: root.verticalCenter }
        iconOnly: true
        alignRight: true
        symbol: Symbols.ellipsis
        helpText: qsTr("Tools")
        menu: root.tools
    }
}
