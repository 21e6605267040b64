import QtQuick
import Quorl

// Quality against speed and against cost, one point a model.
Column {
    id: root

    required property ScorePointListModel points

    readonly property bool isStacked: root.width < 640

    spacing: 12

    Text {
        text: qsTr("Quality against speed and cost")
        textFormat: Text.PlainText
        font: Theme.section
        color: Theme.text

        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Flow {
        width: root.width
        spacing: Theme.betweenFields

        ScorePlot {
            width: root.isStacked ? root.width : (root.width - Theme.betweenFields) / 2
            points: root.points
            title: qsTr("Quality and time")
            lowest: root.points.shortestTime
            highest: root.points.longestTime
            isCost: false
        }

        ScorePlot {
            width: root.isStacked ? root.width : (root.width - Theme.betweenFields) / 2
            visible: root.points.lowestCost !== ""
            points: root.points
            title: qsTr("Quality and cost")
            lowest: root.points.lowestCost
            highest: root.points.highestCost
            isCost: true
        }
    }
}
