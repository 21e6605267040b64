import QtQuick
import Quorl

// The card that opens and closes the list of examples.
BaseButton {
    id: root

    required property string count
    required property bool isOpen

    implicitHeight: 72
    text: qsTr("Training set")

    Accessible.description: root.count
    Accessible.checkable: true
    Accessible.checked: root.isOpen

    contentItem: Item {}

    background: Card {
        color: root.hovered || root.down ? Theme.raised : Theme.surface

        FocusRing {
            around: Theme.cardRadius
            visible: root.visualFocus
        }
    }

    Item {
        anchors { fill: parent; leftMargin: root.leftPadding; rightMargin: root.rightPadding }

        Icon {
            x: 20
            anchors.verticalCenter: parent.verticalCenter
            symbol: Symbols.trayFullFill
            size: 24
            color: Theme.accent
        }

        Column {
            x: 61
            width: chevron.x - x - 12
            anchors.verticalCenter: parent.verticalCenter

            Text {
                width: parent.width
                text: root.text
                textFormat: Text.PlainText
                font: Theme.section
                color: Theme.text
                elide: Text.ElideRight
                lineHeight: Theme.sectionLine
                lineHeightMode: Text.FixedHeight
                Accessible.ignored: true // the button says both
            }
            Text {
                width: parent.width
                height: Theme.captionLine
                text: root.count
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.quiet
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }

        Icon {
            id: chevron

            anchors { right: parent.right; rightMargin: 22; verticalCenter: parent.verticalCenter }
            symbol: Symbols.chevronRight
            size: 18
            rotation: root.isOpen ? 90 : 0

            Behavior on rotation {
                enabled: Motion.isAllowed
                NumberAnimation { duration: 200; easing.type: Easing.InOutQuad }
            }
        }
    }
}
