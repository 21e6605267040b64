import QtQuick
import QtQuick.Templates as T
import Quorl

// The help text itself. What is disabled takes no notice of the pointer, so the item around it is asked then.
Item {
    id: root

    required property Item control
    required property string text
    required property bool isWanted
    required property bool isHasty

    property bool isComplete
    readonly property bool isUnderPointer: around.hovered && root.control.contains(root.control.mapFromItem(root.control.parent, around.point.position))

    Component.onCompleted: root.isComplete = true

    HoverHandler {
        id: around

        parent: root.control.parent
        enabled: !root.control.enabled
    }

    T.ToolTip {
        parent: root.control
        visible: root.isComplete && (root.control.enabled ? root.isWanted : root.isUnderPointer)
        delay: root.isHasty ? 0 : 600
        y: root.control.height + 6
        margins: Theme.fromEdges
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
            Accessible.ignored: true // the control says it
        }

        background: Rectangle {
            radius: Theme.smallRadius
            color: Theme.text
        }
    }
}
