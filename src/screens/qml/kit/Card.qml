import QtQuick
import Quorl

Rectangle {
    radius: Theme.cardRadius
    color: Theme.surface
    border.color: Theme.line
}
