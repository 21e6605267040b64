import QtQuick
import Quorl

// How many questions there are, and the way to add many at once.
Item {
    id: root

    required property int count

    signal pasteRequested

    height: Theme.controlHeight + 4

    Words {
        id: title

        height: Theme.controlHeight
        text: qsTr("Questions")
        font: Theme.section
        color: Theme.text

        Accessible.role: Accessible.Heading
    }
    Words {
        anchors { left: title.right; leftMargin: 8; baseline: title.baseline }
        text: root.count
        font: Theme.caption
        color: Theme.quiet
    }
    TextButton {
        anchors { right: root.right; rightMargin: -rightPadding }
        text: qsTr("Paste list")
        leadingSymbol: Symbols.docOnClipboard
        helpText: qsTr("Add one question per line")
        onClicked: root.pasteRequested()
    }
}
