import QtQuick
import Quorl

// A category, or one step further in a subcategory.
SelectionRow {
    id: root

    required property string categoryName
    required property bool isSubcategory

    implicitHeight: Theme.primaryHeight
    leftPadding: root.isSubcategory ? 32 : 12
    rightPadding: 12
    text: root.categoryName

    contentItem: Text {
        text: root.categoryName
        textFormat: Text.PlainText
        font { family: Theme.body.family; pixelSize: Theme.body.pixelSize; weight: root.isSubcategory ? Font.Normal : Font.DemiBold }
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
