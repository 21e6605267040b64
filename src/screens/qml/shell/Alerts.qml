import QtQuick
import Quorl

// The alerts over everything, one after the other.
Item {
    id: root

    required property AlertModel alert

    AlertDialog {
        visible: root.alert.kind === AlertModel.Deletion
        title: root.alert.deletionTitle
        acceptText: qsTr("Delete")
        cancelText: qsTr("Cancel")
        isDestructive: true
        onAccepted: root.alert.confirmDelete()
        onCancelled: root.alert.cancelDelete()
    }

    AlertDialog {
        visible: root.alert.kind === AlertModel.General
        title: qsTr("Something needs attention")
        message: root.alert.message
        onAccepted: root.alert.dismiss()
        onCancelled: root.alert.dismiss()
    }
}
