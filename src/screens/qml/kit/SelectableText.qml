import QtQuick
import QtQuick.Templates as T
import Quorl

// Somebody else's words: shown as they are, never as markup, to be read, selected and copied.
T.TextArea {
    id: root

    property int line: Theme.bodyLine

    implicitHeight: Math.max(Math.round(contentHeight), root.line) // a document adds fractions, and what is below would blur
    readOnly: true
    selectByMouse: true
    selectByKeyboard: true
    persistentSelection: true
    activeFocusOnTab: true
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.surface
    Keys.onTabPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Accessible.readOnly: true
    Accessible.multiLine: true
    Accessible.name: root.text

    LineSpacing {
        document: root.textDocument
        font: root.font
        lineHeight: root.line
    }

    background: Item {
        FocusRing {
            around: 2
            visible: root.activeFocus && (root.focusReason === Qt.TabFocusReason || root.focusReason === Qt.BacktabFocusReason)
        }
    }
}
