import QtQuick
import Quorl

// The words of a row. Its detail stays readable while the row is disabled, for it says why.
Item {
    id: root

    required property string text
    required property string detail

    implicitWidth: Math.ceil(Math.max(name.implicitWidth, more.visible ? more.implicitWidth : 0))
    implicitHeight: words.implicitHeight

    Accessible.ignored: true

    Column {
        id: words

        width: root.width
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 2 // a fixed line height is added to below the letters

        Text {
            id: name

            width: parent.width
            text: root.text
            textFormat: Text.PlainText
            font: Theme.control
            color: Theme.text
            opacity: root.enabled ? 1 : 0.55
            wrapMode: Text.Wrap
            lineHeight: Theme.controlLine
            lineHeightMode: Text.FixedHeight
        }

        Text {
            id: more

            visible: root.detail !== ""
            width: parent.width
            text: root.detail
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.quiet
            wrapMode: Text.Wrap
            lineHeight: Theme.captionLine
            lineHeightMode: Text.FixedHeight
        }
    }
}
