import QtQuick
import Quorl

// One of the three small texts of a row.
Words {
    height: Theme.captionLine
    font: Theme.caption
    color: Theme.quiet
    elide: Text.ElideRight
}
