import QtQuick
import Quorl

// What yes and no mean, where that has to be said: behind a button, beside its line where both have room.
Item {
    id: root

    required property QuestionEditor editor

    readonly property bool isWide: root.width >= 480

    height: define.y + define.height

    Words {
        id: words

        width: root.isWide ? root.width - define.width - 12 : root.width
        height: root.isWide ? define.height : implicitHeight
        text: qsTr("Add optional definitions only when needed.")
        font: Theme.caption
        color: Theme.quiet
        wrapMode: Text.Wrap
    }

    SecondaryButton {
        id: define

        x: root.isWide ? root.width - width : 0
        y: root.isWide ? 0 : words.height + 12
        text: qsTr("Define Yes and No")
        isActive: popover.active
        onClicked: popover.toggle()
    }

    PopoverLoader {
        id: popover

        // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
        // qmllint disable unqualified
        sourceComponent: YesNoMeanings {
            anchorItem: define
            editor: root.editor
        }
    }
}
