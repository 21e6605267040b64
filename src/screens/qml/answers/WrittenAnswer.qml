import QtQuick
import Quorl

// An answer in words. One that is higher than the pane scrolls by itself, so that the answers beside it and its own judgement
// stay in sight, until all of it is asked for.
Item {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools
    required property ScrollPane pane

    property bool showsAll: false
    // In whole lines, as many as leave room for the card's head and foot.
    readonly property real most: Math.max(8, Math.floor((root.pane.height - 168) / Theme.bodyLine)) * Theme.bodyLine
    readonly property bool isLong: !text.isWhole || text.fullHeight > root.most + 2 * Theme.bodyLine

    implicitHeight: row.y + row.height

    LongText {
        id: text

        y: 3
        width: root.width
        height: root.isLong && !root.showsAll ? root.most : fullHeight
        text: root.card.text
        page: root.pane
    }

    TextButton {
        id: more

        x: -leftPadding
        y: text.y + text.height + 4
        visible: root.isLong
        text: root.showsAll ? qsTr("Show less") : qsTr("Show all")
        onClicked: {
            text.takeAll();
            root.showsAll = !root.showsAll;
        }
    }

    JudgingFoot {
        id: row

        y: more.visible ? more.y + more.height + 4 : text.y + text.height + 12
        width: root.width
        card: root.card
        tools: root.tools
    }
}
