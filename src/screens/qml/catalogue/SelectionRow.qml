import QtQuick
import QtQuick.Templates as T
import Quorl

// A row that is selected by a click.
T.ItemDelegate {
    id: root

    required property int index

    readonly property SelectionList list: ListView.view as SelectionList
    readonly property bool isSelected: root.list !== null && root.index === root.list.selectedRow

    implicitWidth: ListView.view ? ListView.view.width : 0
    focusPolicy: Qt.ClickFocus // Tab stops at the list
    hoverEnabled: true
    onPressed: root.list.isKeyed = false
    onClicked: root.list.rowSelected(root.index)

    Accessible.name: root.text
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Accessible.onPressAction: root.clicked()

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.isSelected ? Theme.select : root.hovered ? Theme.raised : "transparent"

        FocusRing {
            anchors.margins: 0 // within the row, for the list is clipped
            around: Theme.controlRadius - 4
            visible: root.visualFocus || (root.activeFocus && root.list.isKeyed)
        }
    }
}
