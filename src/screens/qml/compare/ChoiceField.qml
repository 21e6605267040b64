import QtQuick
import Quorl

// One option: its name, and behind a button what it means.
EditorRow {
    id: root

    required property int index
    required property string optionID
    required property string label
    required property string detail
    required property bool canRemove

    signal detailEdited(string text)
    signal removed

    leftInset: 24
    placeholderText: qsTr("Choice")
    text: root.label

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 12
        height: 12
        radius: 6
        color: "transparent"
        border.color: Theme.pencil
    }

    IconButton {
        id: more

        anchors { right: parent.right; rightMargin: -5; verticalCenter: parent.verticalCenter }
        size: Theme.smallHeight
        symbol: Symbols.ellipsis
        helpText: qsTr("Choice description and options")
        isActive: popover.active
        onClicked: popover.toggle()
    }

    PopoverLoader {
        id: popover

        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: ChoiceDetails {
            anchorItem: more
            alignRight: true
            detail: root.detail
            canRemove: root.canRemove
            onDetailEdited: text => root.detailEdited(text)
            onRemoved: root.removed()
        }
    }
}
