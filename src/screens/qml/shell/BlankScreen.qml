import QtQuick
import Quorl

Item {
    id: root

    required property BlankScreen screen

    PageHeader {
        x: root.width < 500 ? 20 : 32
        y: 28
        width: root.width - 2 * x
        title: root.screen.title
    }
}
