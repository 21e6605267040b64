import QtQuick
import QtQuick.Templates as T
import Quorl

// A row that is on or off, with a line of detail under its name.
T.CheckBox {
    id: root

    property string detail
    property bool isMarked: visualFocus // a list marks its current row even while that row is disabled

    implicitHeight: Math.max(Theme.rowHeight, contentItem.implicitHeight + 12)
    leftPadding: 28
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.name: root.text
    Accessible.description: root.detail

    contentItem: CheckRowLabel {
        text: root.text
        detail: root.detail
        enabled: root.enabled
    }

    indicator: CheckMark {
        y: (root.height - height) / 2
        isOn: root.checked
        isHovered: root.hovered
        opacity: root.enabled ? 1 : Theme.disabledOpacity

        FocusRing {
            around: 4
            visible: root.isMarked
        }
    }
}
