import QtQuick
import Quorl

// What yes means, and what no.
Popover {
    id: root

    required property QuestionEditor editor

    panelWidth: 336

    LabelledField {
        width: parent.width
        label: qsTr("Yes means (optional)")
        isMultiline: true
        text: root.editor.yesMeans
        onEdited: text => root.editor.editYesMeans(text)
    }
    LabelledField {
        width: parent.width
        label: qsTr("No means (optional)")
        isMultiline: true
        text: root.editor.noMeans
        onEdited: text => root.editor.editNoMeans(text)
    }
}
