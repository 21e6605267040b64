import QtQuick
import Quorl

// The words of a menu's entry.
Item {
    id: root

    required property string text
    required property string detail
    required property string symbol
    required property color color
    required property bool hasSymbolColumn
    required property bool isFigure
    required property bool hasMenu

    readonly property int indent: root.hasSymbolColumn ? 30 : 0
    readonly property int tail: root.hasMenu ? 24 : 0

    implicitWidth: root.indent + Math.ceil(Math.max(word.implicitWidth, more.visible ? more.implicitWidth : 0)) + root.tail
    implicitHeight: more.visible ? word.height + more.height : word.height

    Accessible.ignored: true

    Icon {
        visible: root.symbol !== ""
        anchors.verticalCenter: root.verticalCenter
        size: 18
        symbol: root.symbol
        color: root.color === Theme.text ? Theme.quiet : root.color
    }

    Column {
        x: root.indent
        width: root.width - x - root.tail
        anchors.verticalCenter: root.verticalCenter

        Text {
            id: word

            width: parent.width
            height: Math.max(Theme.controlLine, implicitHeight)
            text: root.text
            textFormat: Text.PlainText
            font: Theme.control
            color: root.color
            horizontalAlignment: root.isFigure ? Text.AlignRight : undefined
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        Text {
            id: more

            width: parent.width
            visible: root.detail !== ""
            text: root.detail
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.quiet
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    Icon {
        anchors { right: root.right; verticalCenter: root.verticalCenter }
        visible: root.hasMenu
        symbol: Symbols.chevronRight
    }
}
