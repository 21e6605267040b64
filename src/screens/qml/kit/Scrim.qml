import QtQuick
import Quorl

// Over the window while it has to wait.
Rectangle {
    color: Theme.scrim

    Behavior on opacity {
        NumberAnimation { duration: 120 }
    }
}
