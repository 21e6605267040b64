import QtQuick
import Quorl

// The words of an alert and its button. A message higher than the window scrolls.
FocusScope {
    id: root

    required property string title
    required property string message

    signal accepted

    // Shows the ring too: an alert comes unasked, and one has to see that Return will press it.
    function focusButton() {
        ok.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: heading.height + 8 + words.contentHeight + 20 + ok.height
    focus: true

    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title
    Accessible.description: root.message

    Text {
        id: heading

        width: root.width
        height: Theme.paneLine
        text: root.title
        textFormat: Text.PlainText
        font: Theme.pane
        color: Theme.text
        elide: Text.ElideRight
    }

    ScrollPane {
        id: words

        y: heading.height + 8
        width: root.width
        height: root.height - y - 20 - ok.height
        contentHeight: message.height

        SelectableText {
            id: message

            width: words.width
            text: root.message
        }
    }

    PrimaryButton {
        id: ok

        x: root.width - width
        y: root.height - height
        focus: true
        text: qsTr("OK")
        onClicked: root.accepted()
    }
}
