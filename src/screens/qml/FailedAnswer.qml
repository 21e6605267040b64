import QtQuick
import Quorl

Column {
    id: root

    required property string error
    required property string time
    required property string tokens
    required property string cost

    property bool showsError: false
    readonly property bool isNarrow: root.width < 400

    signal retryRequested

    spacing: 12

    Item {
        width: root.width
        height: buttons.y + buttons.height

        Icon {
            id: icon

            y: 7
            size: 18
            symbol: Symbols.exclamationmarkCircle
            color: Theme.danger
        }
        Words {
            id: sentence

            anchors { left: icon.right; leftMargin: 8; right: root.isNarrow ? parent.right : buttons.left }
            height: Theme.controlHeight
            text: qsTr("Couldn't get an answer")
            font: Theme.body
            color: Theme.text
            elide: Text.ElideRight
        }
        Row {
            id: buttons

            x: root.isNarrow ? -showError.leftPadding : root.width - width
            y: root.isNarrow ? sentence.height + 4 : 0
            spacing: 8

            TextButton {
                id: showError

                visible: root.error !== ""
                text: qsTr("Show error")
                onClicked: root.showsError = !root.showsError
            }
            SecondaryButton {
                text: qsTr("Retry")
                onClicked: root.retryRequested()
            }
        }
    }

    SelectableText {
        visible: root.showsError
        width: root.width
        text: root.error

        Accessible.name: qsTr("Error: %1").arg(root.error)
    }

    AnswerFigures {
        width: root.width
        time: root.time
        tokens: root.tokens
        cost: root.cost
    }
}
