import QtQuick
import QtQuick.Templates as T
import Quorl

// A message over everything, with one way on.
T.Popup {
    id: root

    required property string title
    required property string message

    readonly property AlertPanel panel: root.contentItem as AlertPanel
    property Item interrupted // had the keyboard before

    signal dismissed

    parent: T.Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)
    width: Math.min(400, parent.width - 40)
    height: Math.min(contentItem.implicitHeight + topPadding + bottomPadding, parent.height - 40)
    padding: 24
    topPadding: 24
    bottomPadding: 24
    modal: true
    focus: true
    visible: true
    closePolicy: T.Popup.CloseOnEscape
    onAboutToShow: root.interrupted = root.parent.Window.activeFocusItem
    onOpened: root.panel.focusButton()
    onClosed: {
        if (root.interrupted)
            root.interrupted.forceActiveFocus(Qt.PopupFocusReason);
        root.dismissed();
    }

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: BorderImage {
        // The picture reaches its margin beyond the panel, whose shadow it is.
        anchors.fill: parent
        anchors.margins: -112
        source: "../icons/shadow-sheet.png"
        border { left: 132; top: 132; right: 132; bottom: 132 }

        Rectangle {
            anchors.fill: parent
            anchors.margins: 112
            radius: Theme.sheetRadius
            color: Theme.surface
        }
    }

    contentItem: AlertPanel {
        title: root.title
        message: root.message
        onAccepted: root.close()
    }
}
