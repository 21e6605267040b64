import QtQuick
import Quorl

// What a score scale is, and a quick way to a common one.
Item {
    id: root

    signal numbersChosen(int highest)

    height: order.y + order.height + 4

    FieldLabel {
        id: label

        anchors.verticalCenter: numbers.verticalCenter
        text: qsTr("Score scale")

        Accessible.ignored: false // it heads several fields
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    InfoButton {
        anchors { left: label.right; leftMargin: 5; verticalCenter: label.verticalCenter }
        accessibleName: qsTr("About score scales")
        helpText: qsTr("Define two to ten ordered levels. Nuvel returns a weighted position on this scale, not a value between numeric minimum and maximum fields.")
    }
    MenuButton {
        id: numbers

        anchors { right: root.right; rightMargin: -rightPadding }
        text: qsTr("Use numbers")
        symbol: Symbols.number
        chevron: true
        look: MenuButton.Look.Text
        alignRight: true
        helpText: qsTr("Replace these levels with a numeric scale")

        menu: Menu {
            MenuEntry {
                text: qsTr("1 to 5")
                onTriggered: root.numbersChosen(5)
            }
            MenuEntry {
                text: qsTr("1 to 10")
                onTriggered: root.numbersChosen(10)
            }
        }
    }
    Words {
        id: order

        y: numbers.height + 4
        text: qsTr("Lowest → highest")
        font: Theme.caption
        color: Theme.quiet
        height: Theme.captionLine
    }
}
