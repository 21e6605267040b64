import QtQuick
import Quorl

// The word of a button, with a symbol before or after it. In a button that is too narrow the word is cut, not the symbols.
Item {
    id: root

    required property string text
    required property color color
    property color symbolColor: root.color
    property font font: Theme.button
    property string leadingSymbol
    property string trailingSymbol
    property int symbolSize: 16
    property int gap: 8
    property real symbolScale: 1
    property int elide: Text.ElideRight
    property bool isSpread // the words at the left, the last symbol at the right

    readonly property real wordGap: root.text !== "" ? root.gap : 0
    readonly property real symbolsWidth: (before.visible ? before.width + root.wordGap : 0) + (after.visible ? after.width + root.wordGap : 0)
    readonly property real wordWidth: Math.min(word.implicitWidth, root.width - root.symbolsWidth)
    readonly property real start: root.isSpread ? 0 : Math.max(0, (root.width - root.wordWidth - root.symbolsWidth) / 2)

    implicitWidth: Math.ceil(word.implicitWidth) + root.symbolsWidth
    implicitHeight: Math.max(Theme.controlLine, Math.ceil(word.implicitHeight))

    Icon {
        id: before

        x: root.start
        anchors.verticalCenter: root.verticalCenter
        visible: root.leadingSymbol !== ""
        scale: root.symbolScale
        symbol: root.leadingSymbol
        size: root.symbolSize
        color: root.symbolColor
    }

    Text {
        id: word

        x: before.visible ? before.x + before.width + root.wordGap : root.start
        width: Math.ceil(root.wordWidth)
        height: root.height
        text: root.text
        textFormat: Text.PlainText
        font: root.font
        color: root.color
        verticalAlignment: Text.AlignVCenter
        elide: root.elide
        Accessible.ignored: true
    }

    Icon {
        id: after

        x: root.isSpread ? root.width - width : word.x + word.width + root.wordGap
        anchors.verticalCenter: root.verticalCenter
        visible: root.trailingSymbol !== ""
        symbol: root.trailingSymbol
        size: root.symbolSize
        color: root.symbolColor
    }
}
