import QtQuick
import Quorl

Item {
    id: root

    property string log

    readonly property string palette: [Theme.bg, Theme.surface, Theme.raised, Theme.border, Theme.text, Theme.muted, Theme.accent, Theme.accentHover,
                                       Theme.secondary, Theme.accentSubtle, Theme.good, Theme.danger].join(" ").toUpperCase()

    QuorlMark { objectName: "mark"; size: 40 }
    QuorlResponseLoader { objectName: "loader"; y: 60; width: 300; modelName: "Zun" }
    QuorlResponseLoader { objectName: "compact"; y: 110; width: 300; modelName: "Zun"; compact: true }
    QuorlRatingProgress { objectName: "rating"; y: 140; completed: 1; total: 4 }
    ProbabilityBar { objectName: "bar"; y: 170; width: 100; percent: 71; isFirst: true; accessibleLabel: "Refund in full" }
    FigureText { objectName: "figures"; y: 190; text: "1.111" }
    FigureText { objectName: "wider"; y: 190; text: "8.888" }
    StatusDot { objectName: "dot"; x: 40; y: 230; state: "blocked"; helpText: "Add an API key." }
    SecondaryButton { objectName: "under"; x: 420; y: 310; text: "Under the toast"; onClicked: root.log += "under " }
    QuorlFeedbackToast { objectName: "toast"; x: 400; y: 300 }
    Divider { objectName: "divider"; x: 350; height: root.height; place: 350; minimum: 300; maximum: 440; onMoved: place => { root.log += place + " "; this.place = place; x = place; } }
    PageHeader { objectName: "header"; x: 400; width: 300; title: "Performance"; subtitle: "A calm summary"; SecondaryButton { objectName: "export"; text: "Export CSV" } }
    EmptyPane { objectName: "pane"; x: 400; y: 120; width: 300; title: "No comparisons yet"; message: "Completed comparisons will be available here."; symbol: Symbols.clock }
}
