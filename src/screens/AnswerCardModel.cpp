#include "screens/AnswerCardModel.h"

#include "base/Format.h"
#include "base/Text.h"
#include "screens/AnswerCorrection.h"
#include "screens/Strings.h"

#include <QVariantMap>

#include <utility>

namespace quorl {

namespace {

const std::string savedTitle = "Saved to dataset";
constexpr std::size_t spokenCharacters = 300; // of an answer nobody has asked to hear

QVariantMap shownSignal(const DecisionResult::Signal& signal) {
    return {{QStringLiteral("label"), toQString(signal.label)},
            {QStringLiteral("percent"), QVariant::fromValue(signal.percent)}};
}

QVariantMap shownResult(const DecisionResult& result) {
    QVariantList signalRows;
    for (const auto& signal : result.signals)
        signalRows.append(shownSignal(signal));
    const QString confidence =
        result.confidence ? AnswerCardModel::tr("Model confidence: %1%").arg(*result.confidence) : QString();
    return {{QStringLiteral("prompt"), toQString(result.prompt)},
            {QStringLiteral("answer"), toQString(result.answer)},
            {QStringLiteral("confidence"), confidence},
            {QStringLiteral("signals"), signalRows}};
}

std::string spokenResults(const std::vector<DecisionResult>& results) {
    if (results.size() == 1)
        return results.front().answer;
    std::string words;
    for (const auto& result : results)
        words.append(words.empty() ? "" : ", ").append(result.prompt).append(": ").append(result.answer);
    return words;
}

// All but the judgements.
bool isSameAnswer(const ModelAnswer& left, ModelAnswer right) {
    right.chosenCorrect = left.chosenCorrect;
    right.accepted = left.accepted;
    right.rating = left.rating;
    right.datasetID = left.datasetID;
    return left == right;
}

bool isSameJudgement(const ModelAnswer& left, const ModelAnswer& right) {
    return left.chosenCorrect == right.chosenCorrect && left.accepted == right.accepted &&
           left.rating == right.rating && left.datasetID == right.datasetID;
}

} // namespace

AnswerCardModel::AnswerCardModel(const AnswerCardParts& borrowed, const RunOnCards& ofRun, ModelAnswer shown,
                                 QObject* parent)
    : QObject(parent), parts(borrowed), run(ofRun), answer(std::move(shown)) {}

QString AnswerCardModel::answerID() const {
    return toQString(answer.id.text());
}

QString AnswerCardModel::modelName() const {
    return toQString(answer.modelName);
}

AnswerCardModel::State AnswerCardModel::state() const {
    switch (answer.state) {
    case AnswerState::running:
        return State::Running;
    case AnswerState::done:
        return State::Done;
    case AnswerState::failed:
        return State::Failed;
    }
    Q_UNREACHABLE();
}

QString AnswerCardModel::text() const {
    return toQString(answer.text);
}

QVariantList AnswerCardModel::results() const {
    QVariantList shown;
    for (const DecisionResult& result : decisionResults())
        shown.append(shownResult(result));
    return shown;
}

bool AnswerCardModel::canLogIn() const {
    return state() == State::Failed && answer.provider == ProviderKind::claudeCode;
}

QString AnswerCardModel::transport() const {
    return toQString(transportTitle(answer.provider));
}

QString AnswerCardModel::error() const {
    return toQString(answer.errorMessage.value_or(""));
}

QString AnswerCardModel::time() const {
    return toQString(Format::latency(answer.latencyMS));
}

QString AnswerCardModel::tokens() const {
    return toQString(Format::tokens(answer.inputTokens, answer.outputTokens, answer.tokensEstimated));
}

QString AnswerCardModel::cost() const {
    return answer.costUSD ? toQString(Format::cost(answer.costUSD)) : QString();
}

QString AnswerCardModel::thumbsUpHelp() const {
    return isAccepted() ? tr("Clear positive rating") : tr("Mark answer correct and save to dataset");
}

QString AnswerCardModel::thumbsDownHelp() const {
    return isRefused() ? tr("Clear negative rating") : tr("Choose the correct answer and save it");
}

QString AnswerCardModel::ratingLabel() const {
    return answer.rating ? tr("%1 / 10").arg(*answer.rating) : tr("Rate");
}

QString AnswerCardModel::preferenceEntry() const {
    return isPreferred() ? tr("Clear preferred answer") : tr("Mark as preferred answer");
}

void AnswerCardModel::pressThumbsUp() {
    if (isAccepted())
        return parts.model.setAccepted(answer.id, std::nullopt);
    parts.model.setAccepted(answer.id, true);
    parts.model.saveToDataset(answer.id, std::nullopt, std::nullopt, savedTitle);
}

void AnswerCardModel::pressThumbsDown() {
    if (isRefused())
        return parts.model.setAccepted(answer.id, std::nullopt);
    parts.correction.open(answer, decisionResults());
}

void AnswerCardModel::rate(int value) {
    parts.model.setRating(answer.id, value);
}

void AnswerCardModel::clearRating() {
    parts.model.setRating(answer.id, std::nullopt);
}

void AnswerCardModel::saveToDataset() {
    if (!isSaved())
        parts.model.saveToDataset(answer.id, std::nullopt, std::nullopt, savedTitle);
}

void AnswerCardModel::removeFromDataset() {
    parts.model.removeFromDataset(answer.id);
}

void AnswerCardModel::togglePreferred() {
    parts.model.markCorrect(answer.id);
}

void AnswerCardModel::copy() {
    parts.clipboard.replace(answer.text);
}

void AnswerCardModel::runAgain() {
    parts.model.retry(answer.id);
}

void AnswerCardModel::logIn() {
    parts.model.loginClaudeCode();
}

void AnswerCardModel::acceptByKey() {
    if (isJudged(ScoringMode::binary))
        pressThumbsUp();
}

void AnswerCardModel::refuseByKey() {
    if (isJudged(ScoringMode::binary))
        pressThumbsDown();
}

void AnswerCardModel::rateByKey(int value) {
    if (isJudged(ScoringMode::scale))
        rate(value);
}

void AnswerCardModel::update(const ModelAnswer& next) {
    const bool answers = !isSameAnswer(answer, next);
    const bool judges = !isSameJudgement(answer, next);
    const bool arrives = answer.state == AnswerState::running && next.state == AnswerState::done;
    if (!answers && !judges)
        return;
    if (answer.text != next.text || answer.state != next.state)
        readResults.reset();
    answer = next;
    if (answers)
        Q_EMIT answerChanged();
    if (judges)
        Q_EMIT judgementChanged();
    if (arrives)
        Q_EMIT arrived();
}

QString AnswerCardModel::spokenOutcome() const {
    if (state() == State::Failed)
        return tr("%1: Couldn't get an answer").arg(modelName());
    const auto& found = decisionResults();
    const std::string words = found.empty() ? answer.text : spokenResults(found);
    return modelName() + QLatin1String(": ") + toQString(Text::firstCharacters(words, spokenCharacters));
}

const std::vector<DecisionResult>& AnswerCardModel::decisionResults() const {
    if (!readResults) {
        readResults = isDecision() && answer.state == AnswerState::done
                          ? Veritor::decisionResults(answer.text, run.questions)
                          : std::vector<DecisionResult>();
    }
    return *readResults;
}

} // namespace quorl
