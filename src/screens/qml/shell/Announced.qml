import QtQuick

// Words that a screen reader reads unasked.
Item {
    id: root

    property string words

    Accessible.role: Accessible.Notification
    Accessible.name: root.words
    Accessible.ignored: root.words === ""
}
