import QtQuick
import Quorl

// One saved example. The Delete key does what its button does.
RecordRow {
    id: root

    required property string exampleID
    required property string prompt
    required property string completion
    required property string category
    required property string modelName
    required property string judgment

    readonly property real room: root.contentSpace - 34 - 40
    readonly property bool isWrapped: root.contentSpace < 560

    signal removalRequested

    height: words.y + words.height + 16
    Keys.onDeletePressed: root.removalRequested()

    Accessible.name: root.prompt
    Accessible.description: root.completion

    contentItem: Item {}

    Item {
        anchors { fill: parent; leftMargin: root.leftPadding; rightMargin: root.rightPadding }

        Icon {
            y: 8
            symbol: Symbols.bookmarkFill
            size: 18
            color: Theme.accent
        }

        Column {
            id: words

            x: 34
            y: 6
            width: root.room

            Words {
                width: root.room
                text: root.prompt
                font { family: Theme.body.family; pixelSize: 14; weight: Font.DemiBold }
                color: Theme.text
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 2
                lineHeight: Theme.bodyLine
                lineHeightMode: Text.FixedHeight
            }
            Words {
                width: root.room
                topPadding: 4
                bottomPadding: 8
                text: root.completion
                font { family: Theme.body.family; pixelSize: 13 }
                color: Theme.text
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 2
                lineHeight: Theme.controlLine
                lineHeightMode: Text.FixedHeight
            }
            Item {
                width: root.room
                height: root.isWrapped ? 2 * Theme.captionLine + 4 : Theme.captionLine

                ExampleDetail {
                    width: root.isWrapped ? root.room / 2 - 8 : 200
                    text: root.category
                }
                ExampleDetail {
                    x: root.isWrapped ? root.room / 2 : 208
                    width: root.isWrapped ? root.room / 2 : 152
                    text: root.modelName
                }
                ExampleDetail {
                    x: root.isWrapped ? 0 : 368
                    y: root.isWrapped ? Theme.captionLine + 4 : 0
                    width: root.room - x
                    text: root.judgment
                    font: Theme.label
                }
            }
        }

        IconButton {
            anchors { right: parent.right; rightMargin: -8 }
            y: 1
            activeFocusOnTab: root.ListView.isCurrentItem || activeFocus
            symbol: Symbols.trash
            helpText: qsTr("Remove from the dataset")
            onClicked: root.removalRequested()
        }
    }
}
