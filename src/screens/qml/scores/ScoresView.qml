import QtQuick
import Quorl

ScrollPane {
    id: root

    required property ScoresScreen screen

    readonly property int padding: root.width < 500 ? 20 : 32

    contentHeight: content.y + content.height + 32

    Column {
        id: content

        x: root.padding
        y: 28
        width: Math.min(root.width - 2 * x, 1100) // wider, and nobody finds the end of a row
        spacing: Theme.betweenFields

        PageHeader {
            width: content.width
            title: qsTr("Performance")
            subtitle: qsTr("A calm summary of quality, speed, and cost across the work you have judged.")

            SecondaryButton {
                visible: !root.screen.isEmpty
                enabled: root.screen.canExport
                text: qsTr("Export CSV")
                onClicked: root.screen.exportCSV()
            }
        }

        EmptyPane {
            width: content.width
            visible: root.screen.isEmpty
            title: qsTr("No scores yet")
            message: qsTr("Run a comparison and choose, accept, or rate a response. Results will be summarized here.")
            symbol: Symbols.chartBarXaxis
        }

        ScoreFilter {
            width: content.width
            visible: !root.screen.isEmpty
            screen: root.screen
        }

        PerformanceChips {
            width: content.width
            visible: !root.screen.isEmpty
            chips: root.screen.chips
        }

        ScoreTable {
            width: content.width
            visible: !root.screen.isEmpty
            title: qsTr("Overall")
            symbol: Symbols.chartXyaxisLine
            table: root.screen.overall
        }

        ScoreTable {
            width: content.width
            visible: !root.screen.isEmpty
            title: qsTr("By category")
            symbol: Symbols.folder
            table: root.screen.byCategory
        }

        ScorePicture {
            width: content.width
            visible: root.screen.points.count > 0
            points: root.screen.points
        }
    }
}
