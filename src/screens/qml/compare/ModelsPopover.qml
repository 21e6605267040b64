pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The models to choose from.
Popover {
    id: root

    required property DraftScreen screen

    title: qsTr("Models")
    panelWidth: 336
    spacing: 0
    onAboutToShow: root.screen.lookAtModels()

    Repeater {
        id: toggles

        model: root.screen.models
        delegate: ModelToggle {
            width: parent.width
            onToggled: root.screen.toggleModel(modelID)
        }
    }
    Item {
        width: parent.width
        height: 20

        Hairline {
            x: -root.edgeBeside
            y: 8
            width: root.width
        }
    }
    TextButton {
        x: -leftPadding
        text: qsTr("Manage models…")
        onClicked: {
            root.close();
            root.screen.manageModels();
        }
    }
    TextButton {
        x: -leftPadding
        visible: root.screen.offersLogin
        text: qsTr("Log in to Claude Code")
        onClicked: root.screen.logIn()
    }
}
