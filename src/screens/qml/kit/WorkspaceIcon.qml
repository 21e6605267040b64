import QtQuick
import Quorl

// A destination in the toolbar of a narrow window.
IconButton {
    id: root

    property string title
    property bool selected

    helpText: root.title
    isActive: root.selected

    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: root.selected
}
