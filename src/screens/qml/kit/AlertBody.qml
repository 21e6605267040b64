import QtQuick
import Quorl

// The words of an alert and its buttons. A message higher than the window scrolls.
FocusScope {
    id: root

    required property string title
    required property string message
    required property string acceptText
    required property string cancelText
    required property bool isDestructive

    readonly property int messageHeight: root.message === "" ? 0 : message.contentHeight + 8

    signal accepted
    signal cancelled

    function focusButton() {
        (root.cancelText !== "" ? no : yes).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: heading.height + root.messageHeight + 20 + buttons.height
    focus: true
    Keys.onEscapePressed: root.cancelled()

    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title
    Accessible.description: root.message

    Text {
        id: heading

        width: root.width
        text: root.title
        textFormat: Text.PlainText
        font: Theme.pane
        color: Theme.text
        wrapMode: Text.Wrap
        lineHeight: Theme.paneLine
        lineHeightMode: Text.FixedHeight
        Accessible.ignored: true
    }

    ScrollPane {
        id: words

        y: heading.height + 8
        width: root.width
        height: root.height - y - 20 - buttons.height
        visible: root.message !== ""
        contentHeight: message.height

        SelectableText {
            id: message

            width: words.width
            text: root.message
        }
    }

    SheetFooter {
        id: buttons

        anchors.bottom: root.bottom

        SecondaryButton {
            id: no

            visible: root.cancelText !== ""
            text: root.cancelText
            onClicked: root.cancelled()
        }

        PrimaryButton {
            id: yes

            text: root.acceptText
            isDestructive: root.isDestructive
            onClicked: root.accepted()
        }
    }
}
