import QtQuick
import Quorl

// Yes or no, or one to ten.
Row {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools

    height: Theme.controlHeight
    spacing: 8

    ThumbButton {
        anchors.verticalCenter: root.verticalCenter
        visible: !root.card.isRated1To10
        size: Theme.smallHeight
        isUp: true
        checked: root.card.isAccepted
        helpText: qsTr("%1\nKey: Y").arg(root.card.thumbsUpHelp)
        accessibleName: root.card.thumbsUpHelp
        onClicked: root.card.pressThumbsUp()
    }
    ThumbButton {
        anchors.verticalCenter: root.verticalCenter
        visible: !root.card.isRated1To10
        size: Theme.smallHeight
        isUp: false
        checked: root.card.isRefused
        helpText: qsTr("%1\nKey: N").arg(root.card.thumbsDownHelp)
        accessibleName: root.card.thumbsDownHelp
        onClicked: root.card.pressThumbsDown()
    }

    CardMenuButton {
        visible: root.card.isRated1To10
        card: root.card
        text: root.card.ratingLabel
        symbol: root.card.rating > 0 ? Symbols.starFill : Symbols.star
        chevron: true
        helpText: qsTr("%1\nKeys: 1 to 9, 0 for 10").arg(help)
        menu: root.tools.ratingMenu

        readonly property string help: qsTr("Rate this answer from 1 to 10")

        Accessible.description: help
    }
}
