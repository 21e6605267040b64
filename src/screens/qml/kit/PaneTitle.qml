import QtQuick
import Quorl

// The head of a pane, centred in the height of a control.
Text {
    height: Theme.controlHeight
    textFormat: Text.PlainText
    font: Theme.pane
    color: Theme.text
    verticalAlignment: Text.AlignVCenter
    elide: Text.ElideRight

    Accessible.role: Accessible.Heading
    Accessible.name: text
}
