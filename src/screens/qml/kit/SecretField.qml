import QtQuick
import Quorl

// A field for what nobody may read: dots, not to be copied, and not to be had back by undoing.
LineField {
    id: root

    echoMode: TextInput.Password
    passwordMaskDelay: 0
    inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
    Keys.onPressed: event => event.accepted = event.matches(StandardKey.Undo) || event.matches(StandardKey.Redo)

    Accessible.passwordEdit: true
    Accessible.description: root.placeholderText // Qt 6.4 tells no name of a field for passwords
}
