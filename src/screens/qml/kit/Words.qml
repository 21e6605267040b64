import QtQuick

// Words to be read, as they are; a screen reader finds them too, which it does not with a bare Text.
Text {
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
