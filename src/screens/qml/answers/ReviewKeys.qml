import QtQuick
import Quorl

// The keys of the answers beside the composer, which lead through a batch as well.
AnswerKeys {
    id: root

    required property AnswersReview review
    required property AnswersBody body

    readonly property ReviewedAnswers reviewed: root.body.shown as ReviewedAnswers

    isOn: root.body.visible && root.review.hasRun
    cards: root.reviewed ? root.reviewed.cards : null
    canGoOn: true
    canGoBack: root.review.canStepBack
    onNextRequested: root.review.next()
    onPreviousRequested: root.review.stepBack()
}
