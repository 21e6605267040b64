import QtQuick
import Quorl

Rectangle {
    height: 1
    color: Theme.line
}
