#include "screens/FeedbackModel.h"

#include "screens/Announcer.h"
#include "screens/Strings.h"

namespace quorl {

FeedbackModel::FeedbackModel(AppModel& appModel, ModelAdapter& adapter, Announcer& speaker)
    : model(appModel), announcer(speaker) {
    connect(&adapter, &ModelAdapter::changed, this, [this](const ModelChanges& changes) {
        if (changes.has(AppField::feedback))
            refresh();
    });
    refresh();
}

QString FeedbackModel::feedbackID() const {
    return shown ? toQString(latest.id.text()) : QString();
}

QString FeedbackModel::title() const {
    return toQString(latest.title);
}

QString FeedbackModel::detail() const {
    return toQString(latest.detail);
}

QString FeedbackModel::symbol() const {
    return toQString(latest.symbol);
}

void FeedbackModel::refresh() {
    const auto& next = *model.feedback;
    if (next.has_value() == shown && (!next || *next == latest))
        return;
    shown = next.has_value();
    if (next)
        latest = *next;
    Q_EMIT changed();
    if (shown)
        announcer.announce(detail().isEmpty() ? title() : tr("%1. %2").arg(title(), detail()));
}

} // namespace quorl
