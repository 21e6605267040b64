pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// A few of which one is on. One stop of the Tab key; the arrows move, and choose as they go.
Rectangle {
    id: root

    property var model: []
    property var currentValue
    property bool iconOnly
    property string accessibleName

    readonly property int currentIndex: root.model.findIndex(entry => entry.value === root.currentValue)

    signal chosen(var value)

    function choose(place: int) {
        const next = (place + root.model.length) % root.model.length;
        entries.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
        root.chosen(root.model[next].value);
    }

    implicitWidth: 2 + root.model.length * (root.iconOnly ? 42 : 104)
    implicitHeight: Theme.controlHeight
    radius: Theme.controlRadius
    color: Theme.raised
    opacity: enabled ? 1 : Theme.disabledOpacity

    Accessible.role: Accessible.Grouping
    Accessible.name: root.accessibleName

    Row {
        x: 1
        y: 1

        Repeater {
            id: entries

            model: root.model

            SegmentButton {
                required property int index
                required property var modelData

                width: (root.width - 2) / root.model.length
                height: root.height - 2
                text: root.iconOnly ? "" : modelData.text ?? ""
                accessibleName: modelData.text ?? ""
                symbol: modelData.symbol ?? ""
                helpText: modelData.helpText ?? ""
                isOn: index === root.currentIndex
                isTabStop: isOn || activeFocus || (root.currentIndex < 0 && index === 0)
                onClicked: root.chosen(modelData.value)
                onMoved: step => root.choose(index + step)
            }
        }
    }
}
