import QtQuick
import Quorl

// Praise that comes and goes by itself, and takes no clicks. A new `feedbackID` replaces what is shown; an empty one takes it
// away. While it goes it still shows what it said.
Item {
    id: root

    property string title
    property string detail
    property string symbol // by its name, such as "hand.thumbsup"
    property bool isMilestone
    property string feedbackID

    property real presence: 0

    implicitWidth: 280
    implicitHeight: panel.item ? (panel.item as ToastPanel).implicitHeight : 0
    visible: root.presence > 0
    opacity: root.presence
    scale: Motion.isAllowed && root.feedbackID !== "" ? 0.98 + 0.02 * root.presence : 1
    onFeedbackIDChanged: {
        if (root.feedbackID !== "") {
            panel.active = true;
            (panel.item as ToastPanel).show(root.title, root.detail, Symbols.named(root.symbol), root.isMilestone);
            leaving.stop();
            coming.restart();
        } else {
            coming.stop();
            leaving.restart();
        }
    }

    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title
    Accessible.description: root.detail

    NumberAnimation {
        id: coming

        target: root
        property: "presence"
        from: 0
        to: 1
        duration: 200
        easing.type: Easing.OutQuad
    }

    NumberAnimation {
        id: leaving

        target: root
        property: "presence"
        to: 0
        duration: 200
        easing.type: Easing.OutQuad
    }

    // Made when there is something to say.
    Loader {
        id: panel

        width: root.width
        active: false
        sourceComponent: ToastPanel {}
    }
}
