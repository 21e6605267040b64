import QtQuick
import Quorl

// The word of a button, with a symbol before or after it.
Item {
    id: root

    required property string text
    required property color color
    property string leadingSymbol
    property string trailingSymbol

    implicitWidth: row.implicitWidth
    implicitHeight: Theme.controlLine

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 8

        Icon {
            visible: root.leadingSymbol !== ""
            symbol: root.leadingSymbol
            color: root.color
            anchors.verticalCenter: parent.verticalCenter
        }

        Text {
            text: root.text
            textFormat: Text.PlainText
            font: Theme.button
            color: root.color
            height: Theme.controlLine
            verticalAlignment: Text.AlignVCenter
        }

        Icon {
            visible: root.trailingSymbol !== ""
            symbol: root.trailingSymbol
            color: root.color
            anchors.verticalCenter: parent.verticalCenter
        }
    }
}
