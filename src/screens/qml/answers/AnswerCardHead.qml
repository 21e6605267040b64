import QtQuick
import Quorl

// The model's name and the menu.
Item {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools

    readonly property alias menuButton: menuButton

    height: Theme.smallHeight

    Words {
        id: name

        width: Math.min(implicitWidth, menuButton.x - 8 - (preferred.visible ? preferred.width + 6 : 0))
        height: root.height
        text: root.card.modelName
        font: Theme.button
        color: root.card.isPreferred ? Theme.text : Theme.quiet
        elide: Text.ElideRight
        maximumLineCount: 1
    }

    Icon {
        id: preferred

        anchors { left: name.right; leftMargin: 6; verticalCenter: name.verticalCenter }
        visible: root.card.isPreferred
        symbol: Symbols.checkmarkCircleFill
        color: Theme.accent
    }

    CardMenuButton {
        id: menuButton

        anchors.right: root.right
        card: root.card
        iconOnly: true
        size: Theme.smallHeight
        symbol: Symbols.ellipsis
        color: Theme.quiet
        alignRight: true
        helpText: root.tools.shown === root.card ? "" : qsTr("Details, copy, and more") // which would lie over the details
        accessibleName: qsTr("Actions for %1").arg(root.card.modelName)
        menu: root.tools.cardMenu
    }
}
