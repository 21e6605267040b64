import QtQuick
import Quorl

// A text to be read and selected, of any length: it is laid out as far as it is read, and scrolls by itself where it is given
// less height than it needs. While the page around it is being scrolled it lets itself be carried along.
ScrollPane {
    id: root

    property string text
    property alias font: words.font
    property alias color: words.color
    property alias line: words.line
    property ScrollPane page: null

    readonly property int fullHeight: Math.ceil(words.height) // of what is laid out
    readonly property bool isWhole: root.taken >= root.text.length
    readonly property bool wantsMore: root.isReady && !root.isWhole && root.contentY + 2 * root.height > root.contentHeight
    // Every character that is laid out is laid out anew with each step while the window is resized: they are not many more than
    // are seen, and where they are too many after all the width follows when it rests.
    readonly property int portion: 1500
    readonly property bool isHeavy: root.taken > 5 * root.portion
    readonly property bool isBehind: words.width !== root.width
    property bool isReady: false
    property int taken: 0 // characters that are laid out

    // Not between the two halves of one character or of one line end.
    function cut(place: int): int {
        const isInside = /^(\r\n|[\ud800-\udbff][\udc00-\udfff])$/.test(root.text.slice(place - 1, place + 1));
        return isInside ? place + 1 : place;
    }

    function begin() {
        root.taken = root.cut(root.portion);
        words.text = root.text.slice(0, root.taken);
        root.contentY = 0;
    }

    function takeMore() {
        if (!root.wantsMore)
            return;
        const next = root.cut(root.taken + Math.max(root.portion / 3, root.taken / 4));
        words.insert(words.length, root.text.slice(root.taken, next));
        root.taken = next;
    }

    function takeAll() {
        if (root.isWhole)
            return;
        words.insert(words.length, root.text.slice(root.taken));
        root.taken = root.text.length;
    }

    function isInSight(): bool {
        const top = root.page ? root.mapToItem(root.page, 0, 0).y : 0;
        return !root.page || (top < root.page.height && top + root.height > 0);
    }

    function fit() {
        if (words.width <= 0 || (!root.isHeavy && root.isInSight()))
            words.width = root.width;
    }

    contentHeight: root.fullHeight
    pixelAligned: true
    interactive: root.height < root.contentHeight && !(root.page && root.page.moving)
    onWidthChanged: {
        root.fit();
        rest.restart();
    }
    onTextChanged: {
        if (root.isReady)
            root.begin();
    }
    // Not in the midst of the layout that asks for it. Qt declares callLater as a property, which the linter takes for no function.
    // qmllint disable type
    onWantsMoreChanged: Qt.callLater(root.takeMore)
    onContentHeightChanged: Qt.callLater(root.takeMore)
    // qmllint enable type
    Component.onCompleted: {
        root.begin();
        root.isReady = true;
    }
    Keys.enabled: root.height < root.contentHeight

    Timer {
        id: rest

        interval: 100
        onTriggered: words.width = root.width
    }

    Connections {
        target: root.isBehind ? root.page : null

        function onContentYChanged() {
            root.fit();
        }
        function onHeightChanged() {
            root.fit();
        }
        function onContentHeightChanged() {
            root.fit();
        }
    }

    SelectableText {
        id: words

        height: implicitHeight
        Keys.onPressed: event => {
            event.accepted = false;
            if (event.matches(StandardKey.SelectAll))
                root.takeAll();
        }

        Accessible.name: root.text
    }
}
