import QtQuick
import Quorl

// Keeps what has the keyboard among the fields in sight, once everything has found its place: a row that was made
// this moment has none yet when it gets the caret.
Item {
    id: root

    required property Item fields

    property bool isDue
    property bool isFresh // seen from the top, as far as that goes

    /// The next time, from the top.
    function startAfresh() {
        root.isFresh = true;
        root.isDue = true;
    }

    function paneAround(item: Item): ScrollPane {
        return item === null || item as ScrollPane ? item as ScrollPane : root.paneAround(item.parent);
    }

    function isField(item: Item): bool {
        return item !== null && (item === root.fields || root.isField(item.parent));
    }

    function settle() {
        const pane = root.paneAround(root.fields);
        if (root.isFresh)
            pane.scrollTo(0);
        if (root.isField(root.Window.activeFocusItem))
            pane.revealFocused();
        root.isDue = false;
        root.isFresh = false;
    }

    Window.onActiveFocusItemChanged: root.isDue = true

    Connections {
        target: root.Window.window
        enabled: root.isDue

        function onAfterAnimating() {
            root.settle();
        }
    }
}
