import QtQuick
import Quorl

// What yes and no mean, where that has to be said.
Column {
    id: root

    required property string yesMeans
    required property string noMeans

    signal yesEdited(string text)
    signal noEdited(string text)

    spacing: 4

    Words {
        width: root.width
        text: qsTr("Add optional definitions only when needed.")
        font: Theme.caption
        color: Theme.quiet
        wrapMode: Text.Wrap
    }
    LineField {
        width: root.width
        placeholderText: qsTr("Yes means (optional)")
        text: root.yesMeans
        onTextEdited: root.yesEdited(text)
    }
    LineField {
        width: root.width
        placeholderText: qsTr("No means (optional)")
        text: root.noMeans
        onTextEdited: root.noEdited(text)
    }
}
