import QtQuick
import Quorl

// A model that can be asked or not, and what stands in its way.
ToggleSwitch {
    required property string modelID
    required property string modelName
    required property bool chosen
    required property bool ready
    required property string obstacle

    text: modelName
    detail: obstacle
    isTrailing: true
    checked: chosen
    enabled: ready
}
