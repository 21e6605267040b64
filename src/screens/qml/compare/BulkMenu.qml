import QtQuick
import Quorl

// What can be done with a row of the bulk list. One menu serves all rows; the one that opens it is told by its id.
Menu {
    id: root

    required property BulkQuestionListModel questions

    property string bulkID
    property int place

    signal removed(int place)

    function take(bulkID: string, place: int) {
        root.bulkID = bulkID;
        root.place = place;
    }

    MenuEntry {
        text: qsTr("Duplicate")
        enabled: root.questions.canAdd
        onTriggered: root.questions.duplicate(root.bulkID)
    }
    MenuEntry {
        text: qsTr("Remove")
        isDestructive: true
        onTriggered: {
            root.questions.remove(root.bulkID);
            root.removed(root.place);
        }
    }
}
