import QtQuick
import Quorl

Item {
    id: root

    required property AnswerCardModel card

    implicitHeight: loader.y + loader.height + 20

    QuorlResponseLoader {
        id: loader

        y: 4
        width: root.width
        modelName: root.card.modelName
    }
}
