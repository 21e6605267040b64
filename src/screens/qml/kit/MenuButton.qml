import QtQuick
import Quorl

// A button that opens a menu, below itself.
PlainButton {
    id: root

    enum Look { Secondary, Text, Title, Navigation }

    property string symbol
    property bool chevron
    property bool iconOnly
    property int size: Theme.controlHeight // when it is a symbol only
    property int look: MenuButton.Look.Secondary
    property color fill: Qt.alpha(Theme.raised, 0)
    property color color: root.look === MenuButton.Look.Text ? Theme.accent : Theme.text
    property bool alignRight
    property Menu menu

    readonly property bool isNavigation: root.look === MenuButton.Look.Navigation && !root.iconOnly
    readonly property bool isBare: root.iconOnly || root.look !== MenuButton.Look.Secondary
    readonly property int leftPadding: root.iconOnly ? 0 : root.isBare && !root.isNavigation ? 8 : 12
    readonly property int rightPadding: root.leftPadding // to be pulled out by

    signal menuWanted // made at the latest then

    function toggleMenu() {
        root.menuWanted();
        if (root.isOpen) {
            root.menu.close();
            return;
        }
        const first = root.visualFocus ? 0 : -1;
        root.menu.parent = root;
        root.menu.alignRight = root.alignRight;
        root.menu.open();
        root.menu.currentIndex = first;
    }

    implicitWidth: root.iconOnly ? root.size : label.implicitWidth + root.leftPadding + root.rightPadding
    implicitHeight: root.iconOnly ? root.size : root.isNavigation ? Theme.primaryHeight : Theme.controlHeight
    isOpen: root.menu !== null && root.menu.visible && !root.menu.isLeaving && root.menu.parent === root
    onClicked: root.toggleMenu()
    Keys.onDownPressed: root.toggleMenu()

    Accessible.role: Accessible.ButtonMenu
    Accessible.description: root.helpText !== Accessible.name ? root.helpText : ""

    ButtonFace {
        anchors.fill: parent
        isHovered: root.hovered
        isDown: root.down || (root.isOpen && !root.iconOnly)
        hasRing: root.visualFocus && !root.isOpen
        isOn: root.iconOnly && root.isOpen
        rest: root.fill
        lit: root.isBare ? Theme.hover : Theme.raised
        pressed: root.isBare ? Theme.press : Theme.raised
        radius: root.implicitHeight < Theme.controlHeight ? Theme.smallRadius : Theme.controlRadius
        border.width: root.isBare ? 0 : 1
        border.color: root.isOpen ? "transparent" : root.down ? Theme.muted : Theme.pencil
    }

    ButtonLabel {
        id: label

        x: root.leftPadding
        width: root.width - x - root.rightPadding
        height: root.height
        text: root.iconOnly ? "" : root.text
        color: root.color
        symbolColor: root.iconOnly && root.isOpen ? Theme.accent : root.color === Theme.text ? Theme.quiet : root.color
        font: root.isNavigation ? Theme.navigation : root.look === MenuButton.Look.Title ? Theme.pane : Theme.button
        leadingSymbol: root.symbol
        trailingSymbol: root.chevron && !root.iconOnly ? Symbols.chevronDown : ""
        symbolSize: root.iconOnly || root.isNavigation ? 18 : 16
        gap: root.isNavigation ? 12 : 8
        isSpread: root.isNavigation
    }
}
