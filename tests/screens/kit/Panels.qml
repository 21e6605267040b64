import QtQuick
import Quorl

Item {
    id: root

    property string log

    function note(word: string) {
        root.log += word + " ";
    }

    Shortcut { sequences: ["Ctrl+N"]; onActivated: root.note("shortcut") }

    SecondaryButton {
        id: options

        objectName: "options"
        x: root.width - width - 20
        y: 20
        text: "Options"
        isActive: popover.visible
        onClicked: popover.toggle()
    }

    Popover {
        id: popover

        objectName: "popover"
        anchorItem: options
        title: "Options"

        LabelledField { objectName: "identifier"; width: parent.width; label: "Question identifier (optional)" }
        TextButton { objectName: "add"; text: "Add another question"; onClicked: more.visible = true }
        Rectangle { id: more; objectName: "more"; width: 10; height: 2000; visible: false }
        Picker { objectName: "picker"; width: parent.width; inForm: true; label: "Rating"; model: [{ text: "Yes / No", value: 1 }, { text: "1 to 10", value: 2 }] }
    }

    SecondaryButton { objectName: "paste"; x: 20; y: 20; text: "Paste"; onClicked: sheet.open() }

    Sheet {
        id: sheet

        objectName: "sheet"
        title: "Paste questions"
        subtitle: "One on each line"
        onCancelled: root.note("cancelled")

        LabelledField { objectName: "lines"; width: parent.width; label: "Questions to paste"; isMultiline: true; minimumLines: 8 }
        Picker { objectName: "sheetPicker"; width: parent.width; inForm: true; label: "Category"; model: [{ text: "None", value: 0 }, { text: "One", value: 1 }]; onChosen: value => root.note("chosen" + value) }

        footer: [
            SecondaryButton { objectName: "cancel"; text: "Cancel"; onClicked: sheet.cancel() },
            PrimaryButton { objectName: "addLines"; text: "Add"; onClicked: root.note("add") }
        ]
    }

    SecondaryButton { objectName: "remove"; x: 20; y: 100; text: "Remove"; onClicked: question.active = true }

    Loader {
        id: question

        active: false
        sourceComponent: AlertDialog {
            objectName: "question"
            title: "Delete this comparison?"
            acceptText: "Delete"
            cancelText: "Cancel"
            isDestructive: true
            onAccepted: root.note("deleted")
            onCancelled: root.note("kept")
            onClosed: question.active = false
        }
    }

    SecondaryButton { objectName: "warn"; x: 20; y: 180; text: "Warn"; onClicked: warning.active = true }

    Loader {
        id: warning

        objectName: "warning"
        active: false
        sourceComponent: AlertDialog {
            title: "Something needs attention"
            message: "Paste a key first."
            onAccepted: warning.active = false
            onCancelled: warning.active = false
        }
    }
}
