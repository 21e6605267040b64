import QtQuick
import Quorl

// One level of a score.
EditorRow {
    id: root

    required property int index
    required property string levelID
    required property string levelText
    required property int count
    required property bool canRemove

    readonly property bool isLowest: root.index === 0
    readonly property bool isHighest: root.index === root.count - 1

    signal removed

    placeholderText: root.isLowest ? qsTr("Lowest level") : root.isHighest ? qsTr("Highest level") : qsTr("Level %1").arg(root.index + 1)
    accessibleName: root.isLowest ? qsTr("Lowest score level")
                  : root.isHighest ? qsTr("Highest score level") : qsTr("Score level %1").arg(root.index + 1)
    text: root.levelText
    rightInset: root.canRemove ? 28 : 0

    IconButton {
        anchors { right: parent.right; rightMargin: -5; verticalCenter: parent.verticalCenter }
        visible: root.canRemove
        size: Theme.smallHeight
        symbol: Symbols.minusCircle
        helpText: qsTr("Remove score level")
        onClicked: root.removed()
    }
}
