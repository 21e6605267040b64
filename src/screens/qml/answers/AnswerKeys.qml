pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quorl

// Judging by keys: J and K move between cards, Y and N and the digits judge the one that has the keyboard, H and L move between
// questions. Never while somebody writes, or while something is open over the window.
Item {
    id: root

    required property bool isOn
    required property AnswerCards cards // null while there are none
    property bool canGoOn
    property bool canGoBack

    component DigitKey: Shortcut {
        required property int value

        autoRepeat: false
        enabled: root.judges
        onActivated: root.judge(card => card.rateByKey(value))
    }

    readonly property Item focused: Window.activeFocusItem
    readonly property TextEdit editor: root.focused as TextEdit
    readonly property bool isWriting: (root.focused as TextInput) !== null || (root.editor !== null && !root.editor.readOnly)
    readonly property bool takesKeys: root.isOn && !root.isWriting && !root.lies(root.focused, T.Overlay.overlay)
    readonly property bool judges: root.takesKeys && root.cards !== null

    signal nextRequested
    signal previousRequested

    function lies(item: Item, above: Item): bool {
        return item !== null && (item === above || root.lies(item.parent, above));
    }

    function go(row: int) {
        root.cards.focusRow(row);
    }

    function goBy(rows: int) {
        root.go(root.cards.current ? root.cards.current.index + rows : 0);
    }

    // The first press shows which card the next ones would judge.
    function judge(by: var) {
        if (root.cards.current)
            by(root.cards.current.card);
        else
            root.go(0);
    }

    // The cards of the other question are there with the next turn of the event loop.
    Timer {
        id: arrival

        interval: 0
        onTriggered: {
            if (root.judges)
                root.go(0);
        }
    }

    Shortcut {
        sequences: ["J", "Alt+Down"]
        enabled: root.judges
        onActivated: root.goBy(1)
    }
    Shortcut {
        sequences: ["K", "Alt+Up"]
        enabled: root.judges
        onActivated: root.goBy(-1)
    }
    Shortcut {
        sequences: ["Y"]
        autoRepeat: false
        enabled: root.judges
        onActivated: root.judge(card => card.acceptByKey())
    }
    Shortcut {
        sequences: ["N"]
        autoRepeat: false
        enabled: root.judges
        onActivated: root.judge(card => card.refuseByKey())
    }
    Shortcut {
        sequences: ["L", "Alt+Right"]
        autoRepeat: false
        enabled: root.takesKeys && root.canGoOn
        onActivated: {
            root.nextRequested();
            arrival.start();
        }
    }
    Shortcut {
        sequences: ["H", "Alt+Left"]
        autoRepeat: false
        enabled: root.takesKeys && root.canGoBack
        onActivated: {
            root.previousRequested();
            arrival.start();
        }
    }

    DigitKey { sequences: ["1"]; value: 1 }
    DigitKey { sequences: ["2"]; value: 2 }
    DigitKey { sequences: ["3"]; value: 3 }
    DigitKey { sequences: ["4"]; value: 4 }
    DigitKey { sequences: ["5"]; value: 5 }
    DigitKey { sequences: ["6"]; value: 6 }
    DigitKey { sequences: ["7"]; value: 7 }
    DigitKey { sequences: ["8"]; value: 8 }
    DigitKey { sequences: ["9"]; value: 9 }
    DigitKey { sequences: ["0"]; value: 10 }
}
