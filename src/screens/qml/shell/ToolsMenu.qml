import QtQml.Models
import QtQuick
import Quorl

// The screens that one goes to now and then, and the motion preference.
Menu {
    id: root

    required property RootScreen screens

    minimumWidth: 200

    MenuEntry {
        text: qsTr("Models")
        symbol: Symbols.cpu
        onTriggered: root.screens.goTo(RootScreen.Models)
    }
    MenuEntry {
        text: qsTr("Performance")
        symbol: Symbols.chartBar
        onTriggered: root.screens.goTo(RootScreen.Scores)
    }
    MenuEntry {
        text: qsTr("Categories")
        symbol: Symbols.tag
        onTriggered: root.screens.goTo(RootScreen.Categories)
    }
    MenuEntry {
        text: qsTr("API batches")
        symbol: Symbols.squareStack
        onTriggered: root.screens.goTo(RootScreen.Batches)
    }

    MenuDivider {}

    Menu {
        id: motion

        title: qsTr("Motion")
        minimumWidth: 200

        Instantiator {
            model: Motion.titles
            delegate: MenuEntry {
                required property int index
                required property string modelData

                text: modelData
                isCurrent: Motion.preference === index
                onTriggered: Motion.choose(index)
            }
            onObjectAdded: (index, object) => motion.insertItem(index, object)
            onObjectRemoved: (index, object) => motion.removeItem(object)
        }
    }
}
