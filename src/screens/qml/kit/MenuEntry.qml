import QtQuick
import QtQuick.Templates as T
import Quorl

// One entry of a menu.
T.MenuItem {
    id: root

    property string symbol
    property string detail
    property bool isDestructive
    property bool isCurrent // marked, as the one of several that is on
    property bool isFigure // stands at the right, in less height

    readonly property MenuList list: root.ListView.view as MenuList
    readonly property bool hasMark: root.isCurrent && !root.isFigure

    function makeRoom() {
        if (root.hasMark && root.list)
            root.list.hasMarks = true;
    }

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: root.isFigure ? Theme.smallHeight : Math.max(Theme.controlHeight, contentItem.implicitHeight + 12)
    leftPadding: 12
    rightPadding: 12
    opacity: enabled ? 1 : Theme.disabledOpacity
    onListChanged: root.makeRoom()
    onHasMarkChanged: root.makeRoom()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.text
    Accessible.description: root.detail
    Accessible.checkable: root.isCurrent
    Accessible.checked: root.isCurrent
    Accessible.onPressAction: if (root.enabled) root.clicked()

    contentItem: MenuLabel {
        text: root.text
        detail: root.detail
        symbol: root.hasMark ? Symbols.checkmark : root.symbol
        color: root.isDestructive ? Theme.danger : Theme.text
        hasSymbolColumn: root.symbol !== "" || (root.list !== null && root.list.hasMarks)
        isFigure: root.isFigure
        hasMenu: root.subMenu !== null
    }

    background: Rectangle {
        radius: Theme.smallRadius
        color: root.highlighted || (root.enabled && root.hovered) || (root.isFigure && root.isCurrent) ? Theme.select : "transparent"
    }
}
