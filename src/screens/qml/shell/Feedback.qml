import QtQuick
import Quorl

// The toast, with what it is to say.
QuorlFeedbackToast {
    id: root

    required property FeedbackModel feedback

    title: root.feedback.title
    detail: root.feedback.detail
    symbol: root.feedback.symbol
    isMilestone: root.feedback.isMilestone
    feedbackID: root.feedback.feedbackID // behind the words that it shows
}
