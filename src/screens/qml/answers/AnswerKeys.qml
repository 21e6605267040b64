pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quorl

// Judging by keys: J and K move between cards, Y and N and the digits judge the one that has the keyboard, H and L move between
// questions. Never while somebody writes, or while something is open over the window. A text that is only read keeps letters
// from being shortcuts as one that is written in does; whoever has the answers forwards them here.
Item {
    id: root

    required property bool isOn
    required property AnswerCards cards // null while there are none
    property bool canGoOn
    property bool canGoBack

    component Key: Shortcut {
        id: shortcut

        required property int key
        property string also

        readonly property string letter: String.fromCharCode(shortcut.key)

        sequences: shortcut.also === "" ? [shortcut.letter] : [shortcut.letter, shortcut.also]
        autoRepeat: false
        enabled: root.takes(shortcut.key)
        onActivated: root.press(shortcut.key)
    }

    readonly property Item focused: Window.activeFocusItem
    readonly property TextEdit editor: root.focused as TextEdit
    readonly property bool isWriting: (root.focused as TextInput) !== null || (root.editor !== null && !root.editor.readOnly)
    readonly property bool takesKeys: root.isOn && !root.isWriting && !root.lies(root.focused, T.Overlay.overlay)

    signal nextRequested
    signal previousRequested

    function lies(item: Item, above: Item): bool {
        return item !== null && (item === above || root.lies(item.parent, above));
    }

    function takes(key: int): bool {
        const applies = key === Qt.Key_L ? root.canGoOn : key === Qt.Key_H ? root.canGoBack : root.cards !== null;
        return root.takesKeys && applies;
    }

    function goBy(rows: int) {
        root.cards.focusRow(root.cards.current ? root.cards.current.index + rows : 0);
    }

    // The first press shows which card the next ones would judge.
    function judge(by: var) {
        if (root.cards.current)
            by(root.cards.current.card);
        else
            root.goBy(0);
    }

    function press(key: int) {
        switch (key) {
        case Qt.Key_J: return root.goBy(1);
        case Qt.Key_K: return root.goBy(-1);
        case Qt.Key_Y: return root.judge(card => card.acceptByKey());
        case Qt.Key_N: return root.judge(card => card.refuseByKey());
        case Qt.Key_L: root.nextRequested(); return arrival.start();
        case Qt.Key_H: root.previousRequested(); return arrival.start();
        default: return root.judge(card => card.rateByKey(key === Qt.Key_0 ? 10 : key - Qt.Key_0));
        }
    }

    Keys.onPressed: event => {
        const isDigit = event.key >= Qt.Key_0 && event.key <= Qt.Key_9;
        const isKey = isDigit || [Qt.Key_J, Qt.Key_K, Qt.Key_Y, Qt.Key_N, Qt.Key_L, Qt.Key_H].includes(event.key);
        const isBare = (event.modifiers & ~Qt.KeypadModifier) === Qt.NoModifier && !event.isAutoRepeat;
        event.accepted = isKey && isBare && root.takes(event.key);
        if (event.accepted)
            root.press(event.key);
    }

    // The cards of the other question are there with the next turn of the event loop.
    Timer {
        id: arrival

        interval: 0
        onTriggered: {
            if (root.takes(Qt.Key_J))
                root.cards.focusRow(0);
        }
    }

    Key { key: Qt.Key_J; also: "Alt+Down"; autoRepeat: true }
    Key { key: Qt.Key_K; also: "Alt+Up"; autoRepeat: true }
    Key { key: Qt.Key_Y }
    Key { key: Qt.Key_N }
    Key { key: Qt.Key_L; also: "Alt+Right" }
    Key { key: Qt.Key_H; also: "Alt+Left" }
    Key { key: Qt.Key_1 }
    Key { key: Qt.Key_2 }
    Key { key: Qt.Key_3 }
    Key { key: Qt.Key_4 }
    Key { key: Qt.Key_5 }
    Key { key: Qt.Key_6 }
    Key { key: Qt.Key_7 }
    Key { key: Qt.Key_8 }
    Key { key: Qt.Key_9 }
    Key { key: Qt.Key_0 }
}
