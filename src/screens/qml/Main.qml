import QtQuick
import Quorl

Window {
    id: root

    required property RootScreen screens

    width: 1240
    height: 800
    minimumWidth: 375
    minimumHeight: 420
    visible: true
    title: qsTr("Quorl")
    color: Theme.bg

    Shortcut {
        sequences: ["Ctrl+N"]
        enabled: !root.screens.alert.isShown
        onActivated: root.screens.newComparison()
    }

    CompareScreen {
        anchors.fill: parent
        screen: root.screens.draft
        takesKeys: !root.screens.alert.isShown
    }

    Loader {
        active: root.screens.alert.isShown
        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: Alert {
            title: qsTr("Something needs attention")
            message: root.screens.alert.message
            onDismissed: root.screens.alert.dismiss()
        }
    }
}
