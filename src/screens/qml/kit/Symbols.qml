pragma Singleton

import QtQuick

// The symbols by their names, as characters of the icon font.
QtObject {
    readonly property string fontFamily: "Material Icons"

    readonly property string arrowRight: "\ue5c8"
    readonly property string arrowCounterclockwise: "\ue042"
    readonly property string checkmark: "\ue5ca"
    readonly property string listBullet: "\ue241"
    readonly property string number: "\ue260"
    readonly property string plus: "\ue145"
    readonly property string minusCircle: "\ue15d"
    readonly property string exclamationmarkCircle: "\ue001"
}
