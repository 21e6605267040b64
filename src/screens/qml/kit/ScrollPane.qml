import QtQuick
import QtQuick.Templates as T
import Quorl

// Scrolls its content, by Page Up and Page Down too, and keeps what has the keyboard in sight.
Flickable {
    id: root

    readonly property Item focused: Window.activeFocusItem
    readonly property TextEdit focusedText: root.focused as TextEdit

    /// Scrolls as little as shows that part of an item inside.
    function reveal(item: Item, part: rect) {
        const place = root.contentItem.mapFromItem(item, part);
        const above = place.y - 12;
        const below = place.y + Math.min(place.height + 24, root.height) - root.height - 12;
        root.scrollTo(Math.max(Math.min(root.contentY, above), below));
    }

    function scrollTo(place: real) {
        root.contentY = Math.max(0, Math.min(place, root.contentHeight - root.height));
    }

    function holds(item: Item): bool {
        return item !== null && (item === root.contentItem || root.holds(item.parent));
    }

    function revealFocused() {
        const text = root.focused as TextEdit; // `focusedText` may still be what had the keyboard before
        if (root.holds(root.focused))
            root.reveal(root.focused, text ? text.cursorRectangle : Qt.rect(0, 0, root.focused.width, root.focused.height));
    }

    clip: true
    pixelAligned: true // or hairlines are two pixels thick
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    onFocusedChanged: root.revealFocused()
    Keys.onPressed: event => {
        const direction = event.key === Qt.Key_PageDown ? 1 : event.key === Qt.Key_PageUp ? -1 : 0;
        event.accepted = direction !== 0;
        if (direction !== 0)
            root.scrollTo(root.contentY + direction * (root.height - 40));
    }

    Connections {
        target: root.focusedText

        function onCursorRectangleChanged() {
            root.revealFocused();
        }
    }

    T.ScrollBar.vertical: PaneScrollBar {}
}
