import QtQuick
import Quorl

// A name to be typed, and a button that makes something of it. The keyboard stays for the next name.
FocusScope {
    id: root

    required property string placeholderText
    required property string buttonText
    required property bool canAdd
    property string text

    signal edited(string text)
    signal added

    function add() {
        if (!root.canAdd)
            return;
        root.added();
        field.forceActiveFocus(Qt.OtherFocusReason); // the button rests now
    }

    implicitHeight: Theme.controlHeight

    LineField {
        id: field

        width: root.width - button.width - 12
        focus: true
        placeholderText: root.placeholderText
        text: root.text
        onTextEdited: root.edited(text)
        onAccepted: root.add()
    }

    SecondaryButton {
        id: button

        x: root.width - width
        text: root.buttonText
        enabled: root.canAdd
        onClicked: root.add()
    }
}
