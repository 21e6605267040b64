import QtQuick
import QtQuick.Templates as T
import Quorl

// Remembers who has the keyboard when something opens over the window, and gives it back when that closes.
QtObject {
    id: root

    property Item item
    property bool hadRing

    readonly property int reason: root.hadRing ? Qt.TabFocusReason : Qt.PopupFocusReason

    /// What is opened from a menu outlives the menu: the keyboard goes back to where the menu got it.
    function origin(item: Item): FocusKeeper {
        if (item === null)
            return null;
        const list = item as MenuList;
        return list ? list.keeper : root.origin(item.parent);
    }

    function showsRing(item: Item): bool {
        const control = item as T.Control;
        const button = item as PlainButton;
        return control ? control.visualFocus : button !== null && button.visualFocus;
    }

    function keep(neighbour: Item) {
        const current = neighbour.Window.activeFocusItem;
        const earlier = root.origin(current);
        root.item = earlier ? earlier.item : current;
        root.hadRing = earlier ? earlier.hadRing : root.showsRing(current);
    }

    function isInside(panel: Item, item: Item): bool {
        return item !== null && (item === panel || root.isInside(panel, item.parent));
    }

    /// The first control inside, if there is one.
    function enter(panel: Item) {
        const first = panel.nextItemInFocusChain(true);
        if (root.isInside(panel, first))
            first.forceActiveFocus(root.reason);
    }

    function isFree(panel: Item, current: Item): bool {
        return current === null || current.parent === null || root.isInside(panel, current);
    }

    /// Unless somebody else has taken the keyboard since. A panel that goes has let go of it already, to the
    /// window's own item, which alone has no parent.
    function giveBack(panel: Item) {
        if (root.item && root.item.visible && root.isFree(panel, root.item.Window.activeFocusItem)) {
            const button = root.item as PlainButton;
            if (button)
                button.isFocusQuiet = !root.hadRing; // a reason is told to controls alone
            root.item.forceActiveFocus(root.reason);
        }
        root.item = null;
    }
}
