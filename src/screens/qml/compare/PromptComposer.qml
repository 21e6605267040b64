import QtQuick
import Quorl

// A question to language models.
TextBox {
    id: root

    required property DraftScreen screen

    function focusQuestion() {
        root.forceActiveFocus(Qt.OtherFocusReason);
        root.cursorPosition = root.length;
    }

    minimumLines: 6
    line: Theme.promptLine
    font: Theme.prompt
    placeholderText: qsTr("What would you like to ask?")
    text: root.screen.prompt
    onTextChanged: root.screen.editPrompt(text)

    Accessible.name: qsTr("Question")
}
