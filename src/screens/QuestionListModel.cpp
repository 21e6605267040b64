#include "screens/QuestionListModel.h"

#include "decision/Veritor.h"
#include "screens/Strings.h"

#include <QStringList>

#include <algorithm>

namespace quorl {

namespace {

using Type = QuestionListModel::Type;

Type shownType(DecisionQuestionType type) {
    switch (type) {
    case DecisionQuestionType::choice:
        return Type::Choice;
    case DecisionQuestionType::score:
        return Type::Score;
    case DecisionQuestionType::noul:
        return Type::YesNo;
    }
    Q_UNREACHABLE();
}

DecisionQuestionType storedType(Type type) {
    switch (type) {
    case Type::Choice:
        return DecisionQuestionType::choice;
    case Type::Score:
        return DecisionQuestionType::score;
    case Type::YesNo:
        return DecisionQuestionType::noul;
    }
    Q_UNREACHABLE();
}

QStringList idsOf(const std::vector<DecisionOption>& options) {
    QStringList ids;
    for (const DecisionOption& option : options)
        ids.append(toQString(option.id.text()));
    return ids;
}

QStringList labelsOf(const std::vector<DecisionOption>& options) {
    QStringList labels;
    for (const DecisionOption& option : options)
        labels.append(toQString(option.label));
    return labels;
}

QStringList toQStrings(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& text : texts)
        list.append(toQString(text));
    return list;
}

// What an editor makes of a text by itself, when it is given it, counts as no edit.
void edit(std::string& text, const QString& edited) {
    if (edited != asEdited(toQString(text)))
        text = edited.toStdString();
}

} // namespace

QVariant QuestionListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DecisionQuestion& question = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case QuestionIDRole:
        return toQString(question.id.text());
    case QuestionTypeRole:
        return QVariant::fromValue(shownType(question.type));
    case Qt::DisplayRole:
    case InstructionsRole:
        return toQString(question.instructions);
    case OptionIDsRole:
        return idsOf(question.options);
    case OptionLabelsRole:
        return labelsOf(question.options);
    case LevelsRole:
        return toQStrings(question.levels);
    case CanAddLevelRole:
        return question.levels.size() < Veritor::maximumLevels;
    case YesMeansRole:
        return toQString(question.yesMeans);
    case NoMeansRole:
        return toQString(question.noMeans);
    default:
        return {};
    }
}

QHash<int, QByteArray> QuestionListModel::roleNames() const {
    return {
        {QuestionIDRole, "questionID"},     {QuestionTypeRole, "questionType"},
        {InstructionsRole, "instructions"}, {OptionIDsRole, "optionIDs"},
        {OptionLabelsRole, "optionLabels"}, {LevelsRole, "levels"},
        {CanAddLevelRole, "canAddLevel"},   {YesMeansRole, "yesMeans"},
        {NoMeansRole, "noMeans"},
    };
}

void QuestionListModel::addQuestion() {
    std::vector<DecisionQuestion> questions = *model.draftQuestions;
    questions.push_back(DecisionQuestion::starter());
    model.draftQuestions = std::move(questions);
}

void QuestionListModel::removeQuestion(const QString& questionID) {
    const auto id = UUID::parse(questionID.toStdString());
    std::vector<DecisionQuestion> questions = *model.draftQuestions;
    std::erase_if(questions, [&](const DecisionQuestion& question) { return question.id == id; });
    if (!questions.empty())
        model.draftQuestions = std::move(questions);
}

void QuestionListModel::setType(const QString& questionID, Type type) {
    change(questionID, [&](DecisionQuestion& question) { question.type = storedType(type); });
}

void QuestionListModel::editInstructions(const QString& questionID, const QString& text) {
    change(questionID, [&](DecisionQuestion& question) { edit(question.instructions, text); });
}

void QuestionListModel::editOption(const QString& questionID, const QString& optionID, const QString& text) {
    const auto id = UUID::parse(optionID.toStdString());
    change(questionID, [&](DecisionQuestion& question) {
        for (DecisionOption& option : question.options) {
            if (option.id == id)
                return edit(option.label, text);
        }
    });
}

void QuestionListModel::addOption(const QString& questionID) {
    change(questionID, [](DecisionQuestion& question) {
        question.options.push_back({.id = UUID::random(), .label = {}, .detail = {}});
    });
}

void QuestionListModel::editLevel(const QString& questionID, int place, const QString& text) {
    change(questionID, [&](DecisionQuestion& question) {
        if (place >= 0 && static_cast<std::size_t>(place) < question.levels.size())
            edit(question.levels[static_cast<std::size_t>(place)], text);
    });
}

void QuestionListModel::addLevel(const QString& questionID) {
    change(questionID, [](DecisionQuestion& question) {
        if (question.levels.size() < Veritor::maximumLevels)
            question.levels.emplace_back();
    });
}

void QuestionListModel::editYesMeans(const QString& questionID, const QString& text) {
    change(questionID, [&](DecisionQuestion& question) { edit(question.yesMeans, text); });
}

void QuestionListModel::editNoMeans(const QString& questionID, const QString& text) {
    change(questionID, [&](DecisionQuestion& question) { edit(question.noMeans, text); });
}

template <class Edit>
void QuestionListModel::change(const QString& questionID, Edit apply) {
    const auto id = UUID::parse(questionID.toStdString());
    std::vector<DecisionQuestion> questions = *model.draftQuestions;
    const auto found = std::find_if(questions.begin(), questions.end(),
                                    [&](const DecisionQuestion& question) { return question.id == id; });
    if (found == questions.end())
        return;
    apply(*found);
    model.draftQuestions = std::move(questions);
}

} // namespace quorl
