import QtQuick
import Quorl

Window {
    id: root

    required property RootScreen screens

    readonly property bool isWide: width >= 980
    property bool isSeen // what cannot be seen yet waits for the first frame

    function makeTheRest() {
        root.isSeen = true;
    }

    visible: true
    title: qsTr("Quorl")
    color: Theme.bg
    onFrameSwapped: {
        // Not in the midst of the frame. Qt declares callLater as a property, which the linter takes for no function.
        // qmllint disable type
        if (!root.isSeen)
            Qt.callLater(root.makeTheRest);
        // qmllint enable type
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Loader {
        id: navigation

        width: root.isWide ? implicitWidth : root.width
        height: root.isWide ? root.height : implicitHeight
        sourceComponent: root.isWide ? rail : toolbar

        Component {
            id: rail

            SideRail {
                screens: root.screens
                tools: toolsMenu.item as Menu
            }
        }
        Component {
            id: toolbar

            CompactToolbar {
                screens: root.screens
                tools: toolsMenu.item as Menu
            }
        }
    }

    ScreenStack {
        x: root.isWide ? navigation.width : 0
        y: root.isWide ? 0 : navigation.height
        width: root.width - x
        height: root.height - y
        focus: true
        screens: root.screens
    }

    Loader {
        anchors { right: parent.right; bottom: parent.bottom; margins: 24 }
        active: root.isSeen
        Component.onCompleted: setSource(Qt.resolvedUrl("shell/Feedback.qml"), { feedback: root.screens.feedback })
    }

    Announcement {
        announcer: root.screens.announcer
    }

    Loader {
        id: toolsMenu

        active: root.isSeen
        Component.onCompleted: setSource(Qt.resolvedUrl("shell/ToolsMenu.qml"), { screens: root.screens })
    }

    Loader {
        active: root.isSeen || root.screens.alert.isShown
        Component.onCompleted: setSource(Qt.resolvedUrl("shell/Alerts.qml"), { alert: root.screens.alert })
    }
}
