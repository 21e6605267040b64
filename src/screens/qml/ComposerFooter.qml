import QtQuick
import Quorl

// Who would answer, the run button, and what stands in its way.
Item {
    id: root

    required property DraftScreen screen

    height: compare.height + (validation.visible ? validation.height + 12 : 0)

    Words {
        anchors { left: parent.left; right: compare.left; rightMargin: 12; verticalCenter: compare.verticalCenter }
        text: root.screen.modelsLabel
        font: Theme.control
        color: Theme.quiet
        elide: Text.ElideRight
    }

    PrimaryButton {
        id: compare

        anchors.right: parent.right
        text: root.screen.runLabel
        symbol: Symbols.arrowRight
        onClicked: root.screen.compare()
    }

    Row {
        id: validation

        anchors { top: compare.bottom; topMargin: 12; left: parent.left; right: parent.right }
        visible: root.screen.validation !== ""
        spacing: 8

        Accessible.role: Accessible.AlertMessage
        Accessible.name: root.screen.validation

        Icon {
            y: (Theme.controlLine - height) / 2
            symbol: Symbols.exclamationmarkCircle
            color: Theme.danger
        }

        Text {
            width: parent.width - 24
            text: root.screen.validation
            textFormat: Text.PlainText
            font: Theme.control
            color: Theme.danger
            wrapMode: Text.Wrap
            lineHeight: Theme.controlLine
            lineHeightMode: Text.FixedHeight
            Accessible.ignored: true
        }
    }
}
