import QtQuick
import Quorl

Item {
    id: root

    required property BlankScreen screen
}
