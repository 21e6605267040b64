import QtQuick
import Quorl

// One question of a bulk list.
EditorRow {
    id: root

    required property int number
    required property BulkMenu menu
    required property string bulkID

    leftInset: 32
    placeholderText: qsTr("Question")
    accessibleName: qsTr("Bulk question %1").arg(root.number)

    Text {
        width: 20
        height: parent.height
        text: root.number
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.quiet
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true // the field's name tells it
    }

    MenuButton {
        anchors { right: parent.right; rightMargin: -5; verticalCenter: parent.verticalCenter }
        iconOnly: true
        size: Theme.smallHeight
        symbol: Symbols.ellipsis
        alignRight: true
        helpText: qsTr("Duplicate or remove question")
        accessibleName: qsTr("Question actions")
        menu: root.menu
        onIsOpenChanged: {
            if (isOpen)
                root.menu.take(root.bulkID, root.number - 1);
        }
    }
}
