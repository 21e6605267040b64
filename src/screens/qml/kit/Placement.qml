import QtQuick
import Quorl

// On which side of an item something opens: below, and from its left edge to the right, as long as there is room.
QtObject {
    id: root

    property bool goesBelow: true
    property bool goesRight: true

    function choose(item: Item, width: real, height: real, alignRight: bool) {
        const window = item.Window;
        const place = item.mapToItem(null, 0, 0);
        const above = place.y - 4 - Theme.fromEdges;
        const below = window.height - place.y - item.height - 4 - Theme.fromEdges;
        root.goesBelow = height <= below || below >= above;
        root.goesRight = !alignRight && (place.x + width <= window.width - Theme.fromEdges || place.x + item.width < width);
    }
}
