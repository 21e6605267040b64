import QtQuick
import Quorl

Popover {
    id: root

    required property AnswerCardModel card

    title: root.card ? root.card.modelName : ""
    panelWidth: 400
    height: Math.min(implicitHeight, 560, room.height)
    alignRight: true
    visible: true

    Words {
        visible: text !== ""
        text: root.card.transport
        font: Theme.caption
        color: Theme.quiet
    }
    AnswerDetails {
        width: parent.width
        card: root.card
    }
    SecondaryButton {
        anchors.right: parent.right
        text: qsTr("Done")
        onClicked: root.close()
    }
}
