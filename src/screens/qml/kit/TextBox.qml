import QtQuick
import QtQuick.Templates as T
import Quorl

// A field of several lines on a rule, which grows with its text. Tab leaves it.
T.TextArea {
    id: root

    property int line: Theme.bodyLine
    property int minimumLines: 1
    property bool hidesPlaceholder // which is then for screen readers alone

    implicitHeight: Math.ceil(Math.max(contentHeight, root.minimumLines * root.line)) + topPadding + bottomPadding
    topPadding: 2
    bottomPadding: 8
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    selectByMouse: true
    persistentSelection: true
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.surface
    opacity: enabled ? 1 : Theme.disabledOpacity
    Keys.onTabPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Accessible.multiLine: true

    LineSpacing {
        document: root.textDocument
        font: root.font
        lineHeight: root.line
    }

    Text {
        y: root.topPadding
        width: root.width
        visible: !root.hidesPlaceholder && root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        textFormat: Text.PlainText
        font: root.font
        color: Theme.quiet
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    // A field of Qt 6.4 cannot make a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    cursorDelegate: Caret {
        isShown: root.cursorVisible
        place: root.cursorPosition
    }
    // qmllint enable unqualified

    background: FieldRule {
        isFocused: root.activeFocus
        isHovered: root.hovered
    }
}
