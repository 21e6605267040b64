import QtQuick
import Quorl

// How a tool on this computer is logged in.
Item {
    id: root

    required property CredentialsEditor credentials

    readonly property bool takesLogin: root.credentials.form === CredentialsEditor.Login

    height: status.visible ? status.y + status.height : words.height

    Words {
        id: words

        width: Math.min(implicitWidth, root.width - (login.visible ? login.width + 16 : 0))
        height: Math.max(Theme.controlHeight, implicitHeight)
        text: root.credentials.explanation
        font: Theme.body
        color: Theme.text
        wrapMode: Text.Wrap
        lineHeight: Theme.bodyLine
        lineHeightMode: Text.FixedHeight
    }

    SecondaryButton {
        id: login

        visible: root.takesLogin
        x: words.width + 16
        text: qsTr("Log in")
        onClicked: root.credentials.logIn()
    }

    SelectableText {
        id: status

        y: words.height + 8
        width: root.width
        visible: root.takesLogin && root.credentials.loginStatus !== ""
        text: root.credentials.loginStatus
        font: Theme.control
        line: Theme.controlLine
        color: Theme.quiet
    }
}
