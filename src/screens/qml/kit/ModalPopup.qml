import QtQuick
import QtQuick.Templates as T
import Quorl

// What sheets and alerts share: in the middle of the window, which waits meanwhile; Esc cancels.
T.Popup {
    id: root

    property real panelWidth: 440

    readonly property FocusKeeper keeper: FocusKeeper {}

    signal cancelled

    /// Closed before anybody is told, so that the keyboard is back where it was whatever they do then.
    function cancel() {
        root.close();
        root.cancelled();
    }

    parent: T.Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)
    width: Math.min(root.panelWidth, parent.width - 40)
    height: Math.min(implicitHeight, parent.height - 40)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    onAboutToShow: root.keeper.keep(root.parent)
    onAboutToHide: root.keeper.giveBack(root.contentItem)
    Component.onDestruction: root.keeper.giveBack(root.contentItem) // nobody has closed it

    T.Overlay.modal: Scrim {}

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 180; easing.type: Easing.OutCubic }
        NumberAnimation { property: "scale"; from: Motion.isAllowed ? 0.98 : 1; to: 1; duration: 180; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: 120 }
    }

    background: Panel {
        shadow: "sheet"
        radius: Theme.sheetRadius
    }
}
