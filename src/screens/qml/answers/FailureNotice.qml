import QtQuick
import Quorl

// Instead of an answer: what there is to do about it.
Item {
    id: root

    required property AnswerCardModel card

    readonly property real buttonsWidth: retry.implicitWidth + 8 + showError.implicitWidth + (logIn.visible ? 8 + logIn.implicitWidth : 0)
    readonly property bool isNarrow: sentence.x + sentence.implicitWidth + 16 + root.buttonsWidth > root.width

    signal errorRequested

    implicitHeight: (root.isNarrow ? buttons.y + buttons.height : sentence.y + sentence.height) + 14

    Icon {
        id: icon

        y: 12
        size: 18
        symbol: Symbols.exclamationmarkCircle
        color: Theme.danger
    }

    Words {
        id: sentence

        x: 26
        y: 5
        width: root.width - x
        height: Theme.controlHeight
        text: qsTr("Couldn't get an answer")
        font: Theme.body
        color: Theme.text
        elide: Text.ElideRight
    }

    Flow {
        id: buttons

        x: root.isNarrow ? 0 : root.width - width
        y: root.isNarrow ? sentence.y + sentence.height + 4 : sentence.y
        width: root.isNarrow ? root.width : Math.ceil(root.buttonsWidth)
        layoutDirection: root.isNarrow ? Qt.LeftToRight : Qt.RightToLeft
        spacing: 8

        SecondaryButton {
            id: retry

            text: qsTr("Retry")
            onClicked: root.card.runAgain()
        }
        TextButton {
            id: showError

            text: qsTr("Show error")
            onClicked: root.errorRequested()
        }
        SecondaryButton {
            id: logIn

            visible: root.card.canLogIn
            text: qsTr("Log in to Claude Code")
            onClicked: root.card.logIn()
        }
    }
}
