import QtQuick
import Quorl

// What all cards share, since it is open for one of them at a time: menus, details, corrections.
Item {
    id: root

    required property AnswerCardListModel cards

    readonly property alias cardMenu: cardMenu
    readonly property alias ratingMenu: ratingMenu

    property AnswerCardModel shown // whose details are open
    property Item origin // and beside what

    function showDetails(card: AnswerCardModel, button: Item) {
        root.origin = button;
        root.shown = card;
    }

    /// A card that goes takes along what is open for it.
    function closeAll() {
        cardMenu.close();
        ratingMenu.close();
        root.shown = null;
    }

    AnswerMenu {
        id: cardMenu

        onDetailsRequested: (card, button) => root.showDetails(card, button)
    }

    RatingMenu {
        id: ratingMenu
    }

    // A Loader of Qt 6.4 cannot load a bound component, so the linter has to be told that the ids are there.
    // qmllint disable unqualified
    Loader {
        active: root.shown !== null
        sourceComponent: root.Window.width < 800 ? inSheet : beside

        Component {
            id: beside

            DetailsPopover {
                card: root.shown
                anchorItem: root.origin
                onClosed: root.shown = null
            }
        }
        Component {
            id: inSheet

            DetailsSheet {
                card: root.shown
                onClosed: root.shown = null
            }
        }
    }

    Loader {
        active: root.cards.correction.form === AnswerCorrection.ByChoice
        sourceComponent: CorrectChoiceSheet {
            correction: root.cards.correction
        }
    }
    Loader {
        active: root.cards.correction.form === AnswerCorrection.ByHand
        sourceComponent: ManualCorrectionSheet {
            correction: root.cards.correction
        }
    }
}
