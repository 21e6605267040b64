import QtQuick
import Quorl

// A button whose menu serves all cards and is told of this one.
MenuButton {
    required property AnswerCardModel card
}
