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

    ScreenStack {
        anchors.fill: parent
        focus: true
        screens: root.screens

        Shortcut {
            sequences: ["Ctrl+N"]
            onActivated: root.screens.newComparison()
        }
    }

    Announcement {
        announcer: root.screens.announcer
    }

    Loader {
        active: root.screens.alert.isShown
        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: Alert {
            title: root.screens.alert.title
            message: root.screens.alert.message
            onDismissed: root.screens.alert.dismiss()
        }
    }
}
