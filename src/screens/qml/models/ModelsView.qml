import QtQuick
import Quorl

// The catalogue of models, and an editor of the one that is selected.
ListAndDetail {
    id: root

    required property ModelsScreen screen

    listHeight: list.shortHeight
    detailHeight: detail.height

    list: ModelList {
        id: list

        anchors.fill: parent
        screen: root.screen
    }

    detail: ModelDetail {
        id: detail

        width: parent.width
        screen: root.screen
    }
}
