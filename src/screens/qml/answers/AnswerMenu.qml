import QtQuick
import Quorl

// What can be done with an answer beside judging it.
Menu {
    id: root

    readonly property CardMenuButton button: root.parent as CardMenuButton
    readonly property AnswerCardModel card: root.button ? root.button.card : null

    signal detailsRequested(AnswerCardModel card, Item button)

    // An entry that does not apply is not there, for arrows and for a screen reader too.
    function put(place: int, entry: MenuEntry, isWanted: bool): int {
        if (isWanted)
            root.insertItem(place, entry);
        return isWanted ? place + 1 : place;
    }

    function fill() {
        while (root.count > 2)
            root.takeItem(2);
        const afterRun = root.put(2, again, root.card.canRunAgain);
        const afterDataset = root.put(afterRun, forget, root.card.isSaved);
        root.put(afterDataset, prefer, root.card.canPrefer);
    }

    minimumWidth: Math.max(190, prefer.implicitWidth + leftPadding + rightPadding) // which comes and goes
    onAboutToShow: {
        root.fill();
        root.prepare(); // with the size that it has now
    }

    MenuEntry {
        text: qsTr("Response details")
        onTriggered: root.detailsRequested(root.card, root.button)
    }
    MenuEntry {
        text: qsTr("Copy response")
        onTriggered: root.card.copy()
    }

    readonly property MenuEntry again: MenuEntry {
        text: qsTr("Run again")
        onTriggered: root.card.runAgain()
    }
    readonly property MenuEntry forget: MenuEntry {
        text: qsTr("Remove from dataset")
        isDestructive: true
        onTriggered: root.card.removeFromDataset()
    }
    readonly property MenuEntry prefer: MenuEntry {
        text: root.card ? root.card.preferenceEntry : ""
        onTriggered: root.card.togglePreferred()
    }
}
