import QtQuick
import Quorl

// One of the four small texts of a row.
Words {
    property int line

    y: 39 + 20 * line
    height: Theme.captionLine
    font: Theme.caption
    color: Theme.quiet
    elide: Text.ElideRight
}
