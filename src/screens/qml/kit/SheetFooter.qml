import QtQuick
import Quorl

// The buttons at the foot of a sheet: side by side at the right, one over the other where there is little room.
Grid {
    id: root

    columns: root.parent.width < 272 ? 1 : Math.max(1, root.visibleChildren.length)
    spacing: Theme.betweenButtons
    horizontalItemAlignment: Grid.AlignRight
    anchors.right: root.parent.right
}
