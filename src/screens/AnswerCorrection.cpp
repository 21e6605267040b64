#include "screens/AnswerCorrection.h"

#include "base/Text.h"
#include "screens/Strings.h"

#include <QVariantMap>

#include <algorithm>
#include <map>
#include <utility>

namespace quorl {

QVariantList AnswerCorrection::questions() const {
    QVariantList shown;
    for (const Question& question : asked) {
        QVariantList options;
        for (const std::string& label : question.result.choiceOptions)
            options.append(QVariantMap{{QStringLiteral("text"), toQString(label)},
                                       {QStringLiteral("value"), toQString(label)}});
        shown.append(QVariantMap{{QStringLiteral("prompt"), toQString(question.result.prompt)},
                                 {QStringLiteral("options"), options}});
    }
    return shown;
}

QStringList AnswerCorrection::choices() const {
    QStringList shown;
    for (const Question& question : asked)
        shown.append(toQString(question.chosen.value_or("")));
    return shown;
}

bool AnswerCorrection::canSave() const {
    switch (shownForm) {
    case Form::None:
        return false;
    case Form::ByChoice:
        return std::ranges::all_of(asked,
                                   [](const Question& question) { return question.chosen.has_value(); });
    case Form::ByHand:
        return !Text::isBlank(typed.toStdString());
    }
    Q_UNREACHABLE();
}

void AnswerCorrection::open(const ModelAnswer& answer, const std::vector<DecisionResult>& results) {
    answerID = answer.id;
    asked.clear();
    for (const DecisionResult& result : results) {
        if (result.choiceOptions.size() >= 2)
            asked.push_back({result, std::nullopt});
    }
    typed.clear();
    show(asked.empty() ? Form::ByHand : Form::ByChoice);
}

void AnswerCorrection::choose(int place, const QString& label) {
    asked.at(static_cast<std::size_t>(place)).chosen = label.toStdString();
    Q_EMIT entered();
}

void AnswerCorrection::edit(const QString& next) {
    if (next == typed)
        return;
    typed = next;
    Q_EMIT entered();
}

void AnswerCorrection::save() {
    const ModelAnswer* const answer = model.library.findAnswer(answerID);
    if (!answer || !canSave())
        return;
    const auto completion = corrected(*answer);
    if (!completion) {
        model.alertMessage = "Couldn't apply that correction.";
        return;
    }
    model.setAccepted(answerID, false);
    model.saveToDataset(answerID, completion, true, "Correction saved");
    if (isKept(*completion))
        cancel();
}

void AnswerCorrection::cancel() {
    asked.clear();
    typed.clear();
    show(Form::None);
}

void AnswerCorrection::follow() {
    if (shownForm == Form::None)
        return;
    const ModelAnswer* const answer = model.library.findAnswer(answerID);
    if (!answer || answer->state != AnswerState::done)
        cancel();
}

std::optional<std::string> AnswerCorrection::corrected(const ModelAnswer& answer) const {
    if (shownForm == Form::ByHand)
        return typed.toStdString();
    std::map<std::string, std::string> labels;
    for (const Question& question : asked)
        labels.emplace(question.result.key, question.chosen.value());
    return Veritor::applyingChoiceCorrections(answer.text, labels);
}

// A save that failed has told so in the alert, and the sheet stays for another try.
bool AnswerCorrection::isKept(const std::string& completion) const {
    const ModelAnswer* const answer = model.library.findAnswer(answerID);
    const DatasetExample* const example =
        answer && answer->datasetID ? model.library.findExample(*answer->datasetID) : nullptr;
    return example && example->completion == Text::trimmed(completion);
}

void AnswerCorrection::show(Form next) {
    shownForm = next;
    Q_EMIT changed();
    Q_EMIT entered();
}

} // namespace quorl
