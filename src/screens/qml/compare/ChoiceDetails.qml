import QtQuick
import Quorl

// What an option means, and how it goes.
Popover {
    id: root

    required property string detail
    required property bool canRemove

    signal detailEdited(string text)
    signal removed

    panelWidth: 288

    LabelledField {
        width: parent.width
        label: qsTr("Description")
        placeholderText: qsTr("Optional meaning of this choice")
        isMultiline: true
        text: root.detail
        onEdited: text => root.detailEdited(text)
    }
    TextButton {
        x: -leftPadding
        visible: root.canRemove
        text: qsTr("Remove choice")
        color: Theme.danger
        onClicked: {
            root.close();
            root.removed();
        }
    }
}
