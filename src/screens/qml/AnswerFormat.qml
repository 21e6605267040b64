import QtQuick
import Quorl

// The three types of a question, and what the present one means.
Item {
    id: root

    required property int type

    signal chosen(int type)

    height: row.y + row.height

    FieldLabel {
        id: label

        text: qsTr("Answer format")
    }

    Row {
        id: row

        y: label.height + 6
        spacing: 8

        Segment {
            id: choice

            symbol: Symbols.listBullet
            helpText: qsTr("Choose one option")
            checked: root.type === QuestionListModel.Choice
            onClicked: root.chosen(QuestionListModel.Choice)
        }
        Segment {
            id: score

            symbol: Symbols.number
            helpText: qsTr("Place the answer on an ordered scale")
            checked: root.type === QuestionListModel.Score
            onClicked: root.chosen(QuestionListModel.Score)
        }
        Segment {
            id: yesNo

            symbol: Symbols.checkmark
            helpText: qsTr("Ask a yes or no question")
            checked: root.type === QuestionListModel.YesNo
            onClicked: root.chosen(QuestionListModel.YesNo)
        }
    }

    Text {
        anchors { left: row.right; leftMargin: 12; right: root.right; verticalCenter: row.verticalCenter }
        text: choice.checked ? choice.helpText : score.checked ? score.helpText : yesNo.helpText
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.quiet
        elide: Text.ElideRight
        Accessible.ignored: true // the button that is on says it
    }
}
