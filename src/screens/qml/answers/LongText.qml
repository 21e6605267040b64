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
    readonly property int portion: 2000 // characters; every one that is laid out is laid out anew while the window is resized
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
        const next = root.cut(root.taken + root.portion);
        words.insert(words.length, root.text.slice(root.taken, next));
        root.taken = next;
    }

    function takeAll() {
        if (root.isWhole)
            return;
        words.insert(words.length, root.text.slice(root.taken));
        root.taken = root.text.length;
    }

    contentHeight: root.fullHeight
    pixelAligned: true
    interactive: root.height < root.contentHeight && !(root.page && root.page.moving)
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

    SelectableText {
        id: words

        width: root.width
        height: implicitHeight
        Keys.onPressed: event => {
            event.accepted = false;
            if (event.matches(StandardKey.SelectAll))
                root.takeAll();
        }

        Accessible.name: root.text
    }
}
