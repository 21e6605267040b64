import QtQuick
import Quorl

// One past comparison. The Menu key opens its menu, as a press of the right button does.
RecordRow {
    id: root

    required property string runID
    required property string title
    required property string label
    required property string category
    required property string models
    required property string when
    required property string spoken
    required property HistoryMenu menu

    readonly property real room: root.contentSpace - 48
    readonly property bool isWrapped: root.contentSpace < 600

    function openMenu() {
        actions.toggleMenu();
        root.menu.currentIndex = 0;
    }

    height: root.isWrapped ? Theme.historyRowHeight + 20 : Theme.historyRowHeight
    Keys.onMenuPressed: root.openMenu()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier) !== 0;
        if (event.accepted)
            root.openMenu();
    }
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.spoken
    Accessible.description: qsTr("Open this comparison in the workspace")

    contentItem: Item {}

    Item {
        anchors { fill: parent; leftMargin: root.leftPadding; rightMargin: root.rightPadding }

        Words {
            y: 13
            width: root.room
            text: root.title
            font: Theme.section
            color: Theme.text
            elide: Text.ElideRight
            lineHeight: Theme.sectionLine
            lineHeightMode: Text.FixedHeight
        }

        HistoryDetail {
            width: root.isWrapped ? root.room / 2 - 8 : 160
            text: root.label
        }
        HistoryDetail {
            x: root.isWrapped ? root.room / 2 : 168
            width: root.isWrapped ? root.room / 2 : 200
            text: root.category
        }
        HistoryDetail {
            x: root.isWrapped ? 0 : 376
            width: root.isWrapped ? root.room / 2 - 8 : 104
            line: root.isWrapped ? 1 : 0
            text: root.models
        }
        HistoryDetail {
            x: root.isWrapped ? root.room / 2 : 488
            width: root.isWrapped ? root.room / 2 : root.room - 488
            line: root.isWrapped ? 1 : 0
            text: root.when
        }

        MenuButton {
            id: actions

            anchors { right: parent.right; rightMargin: -8; verticalCenter: parent.verticalCenter }
            activeFocusOnTab: false // the list is one stop
            iconOnly: true
            alignRight: true
            symbol: Symbols.ellipsis
            accessibleName: qsTr("Actions for %1").arg(root.title)
            menu: root.menu
            onIsOpenChanged: {
                if (isOpen)
                    root.menu.runID = root.runID;
            }
        }

        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: actions.clicked()
        }
    }
}
