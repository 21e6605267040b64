import QtQuick
import QtQuick.Templates as T
import Quorl

T.ScrollBar {
    id: root

    implicitWidth: 10
    padding: 2
    minimumSize: 0.06
    visible: root.size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: Theme.text
        opacity: root.active ? 0.16 : 0
    }
}
