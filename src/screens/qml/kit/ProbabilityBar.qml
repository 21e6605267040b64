import QtQuick
import Quorl

// How probable an answer is. It fills when it appears.
Rectangle {
    id: root

    property real percent
    property bool isFirst
    property int delay // milliseconds, so that several fill one after the other
    property string accessibleLabel

    readonly property real share: Math.max(0, Math.min(root.percent, 100)) / 100
    property real filled: Motion.isAllowed ? 0 : 1

    implicitWidth: 88
    implicitHeight: 6
    radius: 3
    color: Theme.raised
    Component.onCompleted: {
        if (Motion.isAllowed)
            filling.start();
    }

    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("%1 %2%").arg(root.accessibleLabel).arg(Math.round(root.percent))

    Rectangle {
        width: root.share === 0 ? 0 : Math.max(height, root.width * root.share) * root.filled
        height: root.height
        radius: Math.min(width, height) / 2
        color: root.isFirst ? Theme.accent : Theme.secondary
    }

    SequentialAnimation {
        id: filling

        PauseAnimation { duration: root.delay }
        NumberAnimation { target: root; property: "filled"; to: 1; duration: 320; easing.type: Easing.OutCubic }
    }
}
