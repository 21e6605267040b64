import QtQuick
import Quorl

Sheet {
    id: root

    required property AnswerCardModel card

    title: root.card ? root.card.modelName : ""
    subtitle: root.card ? root.card.transport : ""
    visible: true
    footer: SecondaryButton {
        text: qsTr("Done")
        onClicked: root.cancel()
    }

    AnswerDetails {
        width: parent.width
        card: root.card
    }
}
