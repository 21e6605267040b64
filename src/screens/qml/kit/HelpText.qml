import QtQuick
import QtQuick.Templates as T
import Quorl

// Explains the control under the pointer. Made only when there is something under the pointer.
Loader {
    id: root

    required property string text
    required property bool wanted

    active: root.wanted && root.text !== ""

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    sourceComponent: T.ToolTip {
        visible: true
        delay: 600
        y: root.parent.height + 6
        margins: 12
        padding: 6
        leftPadding: 8
        rightPadding: 8
        implicitWidth: Math.min(320, contentItem.implicitWidth + leftPadding + rightPadding)
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

        contentItem: Text {
            text: root.text
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.surface
            wrapMode: Text.Wrap
            lineHeight: Theme.captionLine
            lineHeightMode: Text.FixedHeight
        }

        background: Rectangle {
            radius: 6
            color: Theme.text
        }
    }
}
