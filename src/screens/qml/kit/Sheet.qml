import QtQuick
import Quorl

// A task over the window. Its content stands in a column and scrolls when the window is too low for it.
ModalPopup {
    id: root

    default property alias content: body.content
    property string title
    property string subtitle
    property string problem // over the buttons, in sight however long the content is
    property alias footer: body.footer

    padding: 0
    spacing: 16
    onVisibleChanged: {
        if (visible)
            root.keeper.enter(body);
    }

    // The alias to what is inside needs it at once anyway.
    // qmllint disable deferred-property-id
    contentItem: SheetBody {
        id: body

        title: root.title
        subtitle: root.subtitle
        problem: root.problem
        spacing: root.spacing
        onEscaped: root.cancel()
    }
}
