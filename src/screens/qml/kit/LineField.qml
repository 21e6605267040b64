import QtQuick
import QtQuick.Templates as T
import Quorl

// A field of one line on a rule.
T.TextField {
    id: root

    property bool hidesPlaceholder // which is then for screen readers alone

    // A text that is longer than its field is read from its beginning, wherever the caret was left.
    // Called later, since the field goes to its caret after it has told of a change.
    function showBeginning() {
        if (!root.activeFocus)
            root.ensureVisible(0);
    }

    implicitHeight: Theme.controlHeight
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    persistentSelection: true
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.surface
    opacity: enabled ? 1 : Theme.disabledOpacity
    // Qt declares callLater as a property, which the linter takes for no function.
    // qmllint disable type
    onTextChanged: Qt.callLater(root.showBeginning)
    onWidthChanged: Qt.callLater(root.showBeginning)
    onActiveFocusChanged: Qt.callLater(root.showBeginning)
    // qmllint enable type

    Accessible.name: root.placeholderText

    Text {
        x: root.leftPadding
        width: root.width - x - root.rightPadding
        height: root.height
        visible: !root.hidesPlaceholder && root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        textFormat: Text.PlainText
        font: root.font
        color: Theme.quiet
        verticalAlignment: Text.AlignVCenter
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
