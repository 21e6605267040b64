pragma Singleton

import QtQuick

// The symbols by their names, as characters of the icon font.
QtObject {
    readonly property string fontFamily: "Material Icons"

    readonly property string arrowRight: "\ue5c8"
    readonly property string arrowCounterclockwise: "\ue042"
    readonly property string checkmark: "\ue5ca"
    readonly property string exclamationmarkCircle: "\ue001"
}
