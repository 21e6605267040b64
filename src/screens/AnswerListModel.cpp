#include "screens/AnswerListModel.h"

#include "base/Format.h"
#include "decision/VeritorResults.h"
#include "screens/Strings.h"

namespace quorl {

namespace {

AnswerListModel::State shownState(AnswerState state) {
    switch (state) {
    case AnswerState::running:
        return AnswerListModel::State::Running;
    case AnswerState::done:
        return AnswerListModel::State::Done;
    case AnswerState::failed:
        return AnswerListModel::State::Failed;
    }
    Q_UNREACHABLE();
}

QString cost(const ModelAnswer& answer) {
    return answer.costUSD ? AnswerListModel::tr("Cost: %1").arg(toQString(Format::cost(answer.costUSD)))
                          : QString();
}

} // namespace

void AnswerListModel::setRows(std::span<const ModelAnswer> next, QuorlKind runKind) {
    kind = runKind; // no row stays when another run comes on show, so none has to be told
    RecordListModel::setRows(next);
}

QVariant AnswerListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ModelAnswer& answer = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case AnswerIDRole:
        return toQString(answer.id.text());
    case Qt::DisplayRole:
    case ModelNameRole:
        return toQString(answer.modelName);
    case AnswerStateRole:
        return QVariant::fromValue(shownState(answer.state));
    case AnswerTextRole:
        return toQString(kind == QuorlKind::decision ? Veritor::summary(answer.text) : answer.text);
    case ErrorRole:
        return toQString(answer.errorMessage.value_or(""));
    case TimeRole:
        return tr("Time: %1").arg(toQString(Format::latency(answer.latencyMS)));
    case TokensRole:
        return tr("Tokens: %1")
            .arg(toQString(Format::tokens(answer.inputTokens, answer.outputTokens, answer.tokensEstimated)));
    case CostRole:
        return cost(answer);
    default:
        return {};
    }
}

QHash<int, QByteArray> AnswerListModel::roleNames() const {
    return {
        {AnswerIDRole, "answerID"},     {ModelNameRole, "modelName"}, {AnswerStateRole, "answerState"},
        {AnswerTextRole, "answerText"}, {ErrorRole, "error"},         {TimeRole, "time"},
        {TokensRole, "tokens"},         {CostRole, "cost"},
    };
}

} // namespace quorl
