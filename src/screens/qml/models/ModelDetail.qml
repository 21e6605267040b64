import QtQuick
import Quorl

// The selected model, or what to do without one.
Item {
    id: root

    required property ModelsScreen screen

    readonly property ModelEditor editor: root.screen.editor

    height: form.visible ? form.height : empty.height

    Words {
        id: empty

        width: root.width
        height: Theme.pageLine
        visible: !root.editor.isShown
        text: qsTr("Add a model to start.")
        font: Theme.body
        color: Theme.quiet
        wrapMode: Text.Wrap
    }

    Column {
        id: form

        visible: root.editor.isShown
        width: root.width
        spacing: Theme.betweenFields

        Column {
            width: parent.width
            spacing: 14

            PageHeader {
                width: parent.width
                title: root.editor.name
                subtitle: root.editor.subtitle
            }
            ModelFields {
                width: parent.width
                editor: root.editor
                kinds: root.screen.kinds
            }
        }
        Hairline {
            width: parent.width
        }
        Credentials {
            width: parent.width
            credentials: root.screen.credentials
        }
        Hairline {
            width: parent.width
        }
        LabelledField {
            width: parent.width
            label: qsTr("Notes")
            isMultiline: true
            text: root.editor.notes
            onEdited: text => root.editor.notes = text
        }
        ModelActions {
            width: parent.width
            editor: root.editor
        }
    }
}
