import QtQuick
import Quorl

// A message or a question over everything. It comes unasked, so the button that Return presses shows its ring, and
// that is never the one that deletes.
ModalPopup {
    id: root

    required property string title
    property string message
    property string acceptText: qsTr("OK")
    property string cancelText
    property bool isDestructive

    readonly property AlertBody panel: root.contentItem as AlertBody

    signal accepted

    panelWidth: root.message === "" ? 360 : 400
    padding: 24
    visible: true
    onVisibleChanged: {
        if (visible)
            root.panel.focusButton();
    }
    Component.onCompleted: {
        if (root.visible)
            root.panel.focusButton();
    }

    contentItem: AlertBody {
        title: root.title
        message: root.message
        acceptText: root.acceptText
        cancelText: root.cancelText
        isDestructive: root.isDestructive
        onAccepted: {
            root.close();
            root.accepted();
        }
        onCancelled: root.cancel()
    }
}
