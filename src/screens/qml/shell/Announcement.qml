import QtQuick
import Quorl

// What is said to a screen reader alone. It asks for the words some time after it has heard that there are some, so each of
// several that come together has a place of its own.
Item {
    id: root

    required property Announcer announcer

    property int next

    function announce() {
        const place = places.itemAt(root.next) as Announced;
        place.words = root.announcer.words;
        root.announcer.read(place);
        root.next = (root.next + 1) % places.count;
    }

    Repeater {
        id: places

        model: 4
        delegate: Announced {}
    }

    Connections {
        target: root.announcer

        function onAnnounced() {
            root.announce();
        }
    }
}
