import QtQuick
import QtQuick.Templates as T
import Quorl

T.MenuSeparator {
    implicitHeight: 13
    padding: 6
    leftPadding: 12
    rightPadding: 12

    contentItem: Hairline {}
}
