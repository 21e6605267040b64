import QtQuick
import Quorl

// What one model has answered.
Card {
    id: root

    required property string answerID
    required property string modelName
    required property int answerState
    required property string answerText
    required property string error
    required property string time
    required property string tokens
    required property string cost
    required property bool isNear

    readonly property bool isFilled: body.active

    signal retryRequested

    height: body.y + body.height + 20
    onIsNearChanged: body.active = body.active || root.isNear
    Component.onCompleted: body.active = root.isNear

    Accessible.role: Accessible.Grouping
    Accessible.name: root.modelName

    Text {
        id: name

        x: 20
        y: 12
        width: root.width - 40
        height: 28
        text: root.modelName
        textFormat: Text.PlainText
        font: Theme.button
        color: Theme.quiet
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    Loader {
        id: body

        x: 20
        y: name.y + name.height
        width: root.width - 40
        height: status === Loader.Ready ? implicitHeight : 60
        active: false
        sourceComponent: root.answerState === AnswerListModel.Running ? running
                       : root.answerState === AnswerListModel.Failed ? failed : done
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Component {
        id: running

        ResponseLoader {
            modelName: root.modelName
        }
    }
    Component {
        id: failed

        FailedAnswer {
            error: root.error
            time: root.time
            tokens: root.tokens
            cost: root.cost
            onRetryRequested: root.retryRequested()
        }
    }
    Component {
        id: done

        FinishedAnswer {
            text: root.answerText
            time: root.time
            tokens: root.tokens
            cost: root.cost
        }
    }
}
