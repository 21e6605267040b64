import QtQuick
import Quorl

// How a program reaches the workspace. The token is shown in the clear: it is here to be copied.
SurfaceCard {
    id: root

    required property BatchesScreen screen

    readonly property bool isNarrow: root.width < 480

    implicitHeight: content.height + 34

    Column {
        id: content

        x: 20
        y: 17
        width: root.width - 40
        spacing: 12

        Item {
            width: content.width
            height: root.isNarrow ? heading.height + 12 + buttons.height : buttons.height

            Row {
                id: heading

                y: root.isNarrow ? 0 : (buttons.height - height) / 2
                spacing: 12

                Text {
                    text: qsTr("Local API")
                    textFormat: Text.PlainText
                    font: Theme.section
                    color: Theme.text

                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                Rectangle {
                    width: 6
                    height: 6
                    radius: 3
                    anchors.verticalCenter: parent.verticalCenter
                    color: status.color
                }

                Words {
                    id: status

                    width: Math.min(implicitWidth, content.width - x - (root.isNarrow ? 0 : buttons.width + 12))
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.screen.status
                    font: Theme.control
                    color: root.screen.isListening ? Theme.good : Theme.danger
                    wrapMode: Text.Wrap
                }
            }

            Row {
                id: buttons

                x: root.isNarrow ? 0 : content.width - width
                y: root.isNarrow ? heading.height + 12 : 0
                spacing: 8

                SecondaryButton {
                    text: qsTr("Copy URL")
                    onClicked: root.screen.copyURL()
                }

                SecondaryButton {
                    text: qsTr("Copy token")
                    onClicked: root.screen.copyToken()
                }
            }
        }

        Column {
            width: content.width
            spacing: 8

            ConnectionValue {
                width: parent.width
                label: qsTr("Base URL")
                value: root.screen.baseURL
            }

            ConnectionValue {
                width: parent.width
                label: qsTr("Token")
                value: root.screen.token
            }
        }

        Hairline {
            width: content.width
        }

        SelectableText {
            width: content.width
            text: root.screen.authorization
            font: Theme.monospace
            line: Theme.monospaceLine
            color: Theme.quiet
            wrapMode: TextEdit.WrapAnywhere
        }
    }
}
