pragma Singleton

import QtQuick

// The symbols by their names, as characters of the icon font.
QtObject {
    id: root

    readonly property string fontFamily: "Material Icons"

    readonly property string rectangle3Group: "\ue8f3"
    readonly property string clock: "\ue8b5"
    readonly property string tray: "\ue156"
    readonly property string trayFull: "\ue97f"
    readonly property string trayFullFill: "\ue97f"
    readonly property string folder: "\ue2c8"
    readonly property string ellipsis: "\ue5d3"
    readonly property string ellipsisCircle: "\ue5d3\u20dd" // this font has it only solid: Icon draws the ring
    readonly property string cpu: "\ue322"
    readonly property string chartBar: "\ue26b"
    readonly property string chartBarXaxis: "\ue26a"
    readonly property string chartXyaxisLine: "\ue6e1"
    readonly property string tag: "\ue893"
    readonly property string squareStack: "\ue3e0"
    readonly property string sliderHorizontal3: "\ue429"
    readonly property string listBullet: "\ue241"
    readonly property string number: "\ueac7"
    readonly property string plus: "\ue145"
    readonly property string minusCircle: "\ue15d"
    readonly property string checkmark: "\ue5ca"
    readonly property string checkmarkCircle: "\ue92d"
    readonly property string checkmarkCircleFill: "\ue86c"
    readonly property string exclamationmarkCircle: "\ue001"
    readonly property string docOnClipboard: "\ue14f"
    readonly property string magnifyingglass: "\ue8b6"
    readonly property string chevronDown: "\ue5cf"
    readonly property string chevronLeft: "\ue5cb"
    readonly property string chevronRight: "\ue5cc"
    readonly property string arrowRight: "\ue5c8"
    readonly property string arrowCounterclockwise: "\ue042"
    readonly property string handThumbsup: "\ue9f3"
    readonly property string handThumbsupFill: "\ue817"
    readonly property string handThumbsdown: "\ue9f2"
    readonly property string handThumbsdownFill: "\ue816"
    readonly property string star: "\ue83a"
    readonly property string starFill: "\ue838"
    readonly property string sparkle: "\ue65f"
    readonly property string bookmark: "\ue867"
    readonly property string bookmarkFill: "\ue866"
    readonly property string info: "\ue88f"
    readonly property string trash: "\ue92e"

    /// The character of a name such as "hand.thumbsup".
    function named(name: string): string {
        return root[name.replace(/\.(\w)/g, (dot, letter) => letter.toUpperCase())] ?? "";
    }
}
