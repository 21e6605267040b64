import QtQuick
import Quorl

// The tree of categories, and an editor of the one that is selected.
ListAndDetail {
    id: root

    required property CategoriesScreen screen

    listHeight: list.shortHeight
    detailHeight: detail.height
    detailWidth: 560

    list: CategoryList {
        id: list

        anchors.fill: parent
        screen: root.screen
    }

    detail: CategoryDetail {
        id: detail

        width: parent.width
        screen: root.screen
    }
}
