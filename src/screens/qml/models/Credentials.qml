import QtQuick
import Quorl

// What a model is asked with: keys to be pasted, or a login. Nothing here ever shows what is saved.
Column {
    id: root

    required property CredentialsEditor credentials

    readonly property bool takesKeys: root.credentials.form === CredentialsEditor.APIKey || root.credentials.form === CredentialsEditor.AccessKeys

    spacing: 12

    Text {
        width: root.width
        height: Theme.sectionLine
        text: qsTr("Credentials")
        textFormat: Text.PlainText
        font: Theme.section
        color: Theme.text
        verticalAlignment: Text.AlignVCenter

        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    SecretField {
        id: apiKey

        visible: root.credentials.form === CredentialsEditor.APIKey
        width: root.width
        placeholderText: root.credentials.apiKeyPlaceholder
        text: root.credentials.apiKey
        onTextEdited: root.credentials.apiKey = text
    }
    SecretField {
        id: accessKey

        visible: root.credentials.form === CredentialsEditor.AccessKeys
        width: root.width
        placeholderText: root.credentials.accessKeyPlaceholder
        text: root.credentials.accessKey
        onTextEdited: root.credentials.accessKey = text
    }
    SecretField {
        visible: accessKey.visible
        width: root.width
        placeholderText: root.credentials.secretKeyPlaceholder
        text: root.credentials.secretKey
        onTextEdited: root.credentials.secretKey = text
    }
    SecretField {
        visible: accessKey.visible
        width: root.width
        placeholderText: qsTr("Session token, if you use one")
        text: root.credentials.sessionToken
        onTextEdited: root.credentials.sessionToken = text
    }

    LoginLine {
        visible: !root.takesKeys
        width: root.width
        credentials: root.credentials
    }
    Words {
        visible: root.takesKeys && text !== ""
        width: root.width
        text: root.credentials.explanation
        font: Theme.caption
        color: Theme.quiet
        wrapMode: Text.Wrap
        lineHeight: Theme.captionLine
        lineHeightMode: Text.FixedHeight
    }

    Flow {
        visible: root.takesKeys
        width: root.width
        spacing: 8

        SecondaryButton {
            text: qsTr("Save credentials")
            onClicked: root.credentials.save()
        }
        SecondaryButton {
            text: qsTr("Remove credentials")
            enabled: root.credentials.isSaved
            onClicked: {
                root.credentials.remove();
                (apiKey.visible ? apiKey : accessKey).forceActiveFocus(Qt.OtherFocusReason); // the button rests now
            }
        }
    }
}
