import QtQuick
import Quorl

// The label over a control, which says it by its own accessible name.
Text {
    height: Theme.captionLine
    textFormat: Text.PlainText
    font: Theme.label
    color: Theme.quiet
    verticalAlignment: Text.AlignVCenter
    elide: Text.ElideRight

    Accessible.ignored: true
}
