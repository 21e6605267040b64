import QtQuick
import Quorl

// The card of an answer.
Card {
    id: root

    required property AnswerCardModel card
    required property AnswerTools tools
    required property ScrollPane pane

    property color edge: Theme.line

    implicitHeight: body.y + body.height
    border.color: root.card.isPreferred ? Theme.accent : root.edge
    border.width: root.card.isPreferred ? 2 : 1
    Keys.onTabPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Accessible.role: Accessible.Grouping
    Accessible.name: root.card.modelName

    Connections {
        target: root.card

        function onArrived() {
            arrivalPulse.restart();
        }
    }

    ColorAnimation on edge {
        id: arrivalPulse

        running: false
        from: Theme.secondary
        to: Theme.line
        duration: 600
    }

    FocusRing {
        around: Theme.cardRadius
        visible: root.activeFocus
    }

    AnswerCardHead {
        id: head

        x: 20
        y: 12
        width: root.width - 32
        card: root.card
        tools: root.tools
    }

    Loader {
        id: body

        x: 20
        y: head.y + head.height
        width: root.width - 40
        height: implicitHeight
        sourceComponent: root.card.state === AnswerCardModel.Running ? running
                       : root.card.state === AnswerCardModel.Failed ? failed
                       : root.card.results.length === 0 ? written
                       : root.card.results.length === 1 && root.width >= 480 ? inLine : inList
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: running

        RunningAnswer {
            card: root.card
        }
    }
    Component {
        id: failed

        FailureNotice {
            card: root.card
            onErrorRequested: root.tools.showDetails(root.card, head.menuButton)
        }
    }
    Component {
        id: written

        WrittenAnswer {
            card: root.card
            tools: root.tools
            pane: root.pane
        }
    }
    Component {
        id: inLine

        LineResult {
            card: root.card
            tools: root.tools
        }
    }
    Component {
        id: inList

        ResultList {
            card: root.card
            tools: root.tools
        }
    }
}
