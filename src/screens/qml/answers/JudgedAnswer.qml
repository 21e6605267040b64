import QtQuick
import Quorl

// What one model has answered, to be judged. The card is made when it first comes near to being seen.
FocusScope {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools
    required property ScrollPane pane
    required property bool isNear
    required property int index

    function takeKeyboard() {
        plate.active = true;
        (plate.item as AnswerPlate).forceActiveFocus(Qt.TabFocusReason);
        // Qt declares callLater as a property, which the linter takes for no function.
        // qmllint disable type
        Qt.callLater(root.reveal); // one that has just been made gets its height with what is in it
        // qmllint enable type
    }

    function reveal() {
        root.pane.reveal(root, Qt.rect(0, 0, root.width, root.height));
    }

    height: plate.height
    onIsNearChanged: plate.active = plate.active || root.isNear
    Component.onCompleted: plate.active = root.isNear

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Loader {
        id: plate

        width: root.width
        height: status === Loader.Ready ? implicitHeight : root.card.isDecision ? 92 : 240
        active: false
        sourceComponent: AnswerPlate {
            card: root.card
            tools: root.tools
            pane: root.pane
        }
    }
}
