import QtQuick
import Quorl

// What is said to a screen reader alone.
Item {
    id: root

    required property Announcer announcer

    Accessible.role: Accessible.Notification
    Accessible.name: root.announcer.words

    Connections {
        target: root.announcer

        function onAnnounced() {
            root.announcer.read(root);
        }
    }
}
