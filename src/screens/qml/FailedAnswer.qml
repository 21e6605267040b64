import QtQuick
import Quorl

Column {
    id: root

    required property string error
    required property string time
    required property string tokens
    required property string cost

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
        Text {
            id: sentence

            anchors { left: icon.right; leftMargin: 8; right: root.isNarrow ? parent.right : buttons.left }
            height: Theme.controlHeight
            text: qsTr("Couldn't get an answer")
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
        }
        Row {
            id: buttons

            x: root.isNarrow ? -showError.leftPadding : root.width - width
            y: root.isNarrow ? sentence.height + 4 : 0
            spacing: 8

            TextButton {
                id: showError

                checkable: true
                visible: root.error !== ""
                text: qsTr("Show error")
            }
            SecondaryButton {
                text: qsTr("Retry")
                onClicked: root.retryRequested()
            }
        }
    }

    SelectableText {
        visible: showError.checked
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
