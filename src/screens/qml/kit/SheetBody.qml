import QtQuick
import Quorl

// Title, content and buttons of a sheet.
FocusScope {
    id: root

    required property string title
    required property string subtitle
    required property string problem
    property alias content: column.data
    required property int spacing
    property alias footer: buttons.data

    readonly property int footerHeight: buttons.visibleChildren.length > 0 ? buttons.height + 24 : 0
    readonly property int problemHeight: root.problem !== "" ? problem.height + 12 : 0

    signal escaped

    implicitHeight: 24 + head.height + 20 + column.height + root.problemHeight + root.footerHeight + 24
    focus: true
    Keys.onEscapePressed: root.escaped()

    Accessible.role: Accessible.Dialog
    Accessible.name: root.title
    Accessible.description: root.subtitle

    Column {
        id: head

        x: 24
        y: 24
        width: root.width - 48
        spacing: 4

        Words {
            width: parent.width
            text: root.title
            font: Theme.pane
            color: Theme.text
            wrapMode: Text.Wrap
            lineHeight: Theme.paneLine
            lineHeightMode: Text.FixedHeight
        }

        Words {
            width: parent.width
            visible: root.subtitle !== ""
            text: root.subtitle
            font: Theme.body
            color: Theme.quiet
            wrapMode: Text.Wrap
            lineHeight: Theme.bodyLine
            lineHeightMode: Text.FixedHeight
        }
    }

    ScrollPane {
        y: head.y + head.height + 12
        width: root.width
        height: root.height - y - root.problemHeight - root.footerHeight - 16
        contentHeight: column.height + 16

        Column {
            id: column

            x: 24
            y: 8 // for the focus ring of the first control
            width: root.width - 48
            spacing: root.spacing
        }
    }

    ProblemLine {
        id: problem

        x: 24
        y: foot.y - 16 - height
        width: root.width - 48
        visible: text !== ""
        text: root.problem
    }

    Item {
        id: foot

        x: 24
        y: root.height - 24 - height
        width: root.width - 48
        height: buttons.height

        SheetFooter {
            id: buttons
        }
    }
}
