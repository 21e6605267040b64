import QtQuick
import Quorl

Item {
    id: root

    property string log

    function note(word: string) {
        root.log += word + " ";
    }

    Shortcut {
        sequences: ["Ctrl+Return"]
        onActivated: root.note("run")
    }

    Grid {
        x: 20
        y: 20
        columns: 3
        spacing: 20

        PrimaryButton { objectName: "primary"; text: "Compare"; helpText: "Asks all of them"; onClicked: root.note("primary") }
        SecondaryButton { objectName: "secondary"; text: "Retry"; onClicked: root.note("secondary") }
        TextButton { objectName: "text"; text: "Show error"; onClicked: root.note("text") }
        IconButton { objectName: "icon"; symbol: Symbols.ellipsis; helpText: "Options"; onClicked: root.note("icon") }
        IconButton { objectName: "named"; symbol: Symbols.ellipsis; helpText: "Actions"; accessibleName: "Actions for Zun" }
        ThumbButton { objectName: "thumb"; helpText: "Good answer"; onClicked: root.note("thumb") }
        BookmarkButton { objectName: "bookmark"; onClicked: root.note("bookmark") }
        WorkspaceIcon { objectName: "workspace"; symbol: Symbols.clock; title: "History"; selected: true; onClicked: root.note("workspace") }
        NavigationEntry { objectName: "entry"; symbol: Symbols.clock; title: "Dataset"; onClicked: root.note("entry") }
        PrimaryButton { objectName: "off"; text: "Off"; enabled: false; helpText: "Not now"; onClicked: root.note("off") }
        SecondaryButton { objectName: "narrow"; width: 80; text: "A word that is far too long"; symbol: Symbols.plus }
        InfoButton { objectName: "info"; helpText: "Facts that every question may use" }
    }
}
