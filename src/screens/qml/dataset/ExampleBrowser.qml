pragma ComponentBehavior: Bound

import QtQuick
import Quorl

// The saved examples and the search for them.
Item {
    id: root

    required property DatasetScreen screen
    required property real inset
    required property real rowWidth
    required property bool isOpen

    readonly property bool isStacked: root.rowWidth < 480
    property real rise: root.isOpen ? 0 : -12

    visible: root.opacity > 0
    enabled: root.isOpen
    opacity: root.isOpen ? 1 : 0

    Behavior on opacity {
        NumberAnimation { duration: 200; easing.type: Easing.InOutQuad }
    }
    Behavior on rise {
        enabled: Motion.isAllowed
        NumberAnimation { duration: 200; easing.type: Easing.InOutQuad }
    }

    transform: Translate { y: root.rise }

    Words {
        id: heading

        x: root.inset
        y: root.isStacked ? 0 : 6
        text: qsTr("Saved examples")
        font: Theme.section
        color: Theme.text
        lineHeight: Theme.sectionLine
        lineHeightMode: Text.FixedHeight

        Accessible.role: Accessible.Heading
    }

    SearchField {
        id: field

        x: root.isStacked ? root.inset : root.inset + root.rowWidth - width
        y: root.isStacked ? 32 : 0
        width: root.isStacked ? root.rowWidth : 280
        placeholderText: qsTr("Search examples")
        onEdited: text => {
            root.screen.search(text);
            list.goToTop();
        }
    }

    RecordList {
        id: list

        anchors { top: field.bottom; topMargin: 10; bottom: parent.bottom }
        width: root.width
        inset: root.inset
        rowWidth: root.rowWidth
        usualRowHeight: 124
        spacing: 10
        bottomMargin: 24
        model: root.screen.examples

        Accessible.name: heading.text

        delegate: ExampleRow {
            onRemovalRequested: root.screen.requestDelete(exampleID)
        }
    }
}
