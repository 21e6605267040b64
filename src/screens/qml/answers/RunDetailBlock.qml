import QtQuick
import Quorl

// A text under a hairline, with its label at the left, or above where there is little room.
Item {
    id: root

    property string label
    property string text
    property bool isQuiet // says what stands elsewhere in other words
    required property ScrollPane page

    readonly property bool isNarrow: root.width < 520

    height: words.y + words.height + 15

    Hairline {
        width: root.width
    }

    FieldLabel {
        id: heading

        y: 17
        width: root.isNarrow ? root.width : 120
        visible: root.label !== ""
        text: root.label
        height: Math.max(Theme.captionLine, implicitHeight)
        wrapMode: Text.Wrap

        Accessible.ignored: false
        Accessible.role: Accessible.Heading
        Accessible.name: root.label
    }

    LongText {
        id: words

        x: root.isNarrow ? 0 : 128
        y: root.isNarrow && heading.visible ? heading.y + heading.height + 4 : 14
        width: Math.min(660, root.width - x)
        height: Math.min(fullHeight, 12 * Theme.bodyLine)
        text: root.text
        color: root.isQuiet ? Theme.quiet : Theme.text
        page: root.page
    }
}
