#include "screens/QuestionEditor.h"

#include "decision/Veritor.h"
#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

namespace {

using Type = QuestionEditor::Type;

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

void edit(std::string& text, const QString& edited) {
    if (edited != asEdited(toQString(text)))
        text = edited.toStdString();
}

template <class Record>
auto findRecord(std::vector<Record>& records, const QString& id) {
    const auto wanted = UUID::parse(id.toStdString());
    return std::find_if(records.begin(), records.end(),
                        [&](const Record& record) { return record.id == wanted; });
}

} // namespace

QuestionEditor::QuestionEditor(AppModel& appModel, Place whereItStands, const DecisionQuestion& question)
    : model(appModel), place(whereItStands), shown(question) {
    optionRows.setRows(shown.options);
    levelRows.replaceTexts(shown.levels);
}

QString QuestionEditor::instructions() const {
    return toQString(shown.instructions);
}

QString QuestionEditor::name() const {
    return toQString(shown.name);
}

Type QuestionEditor::type() const {
    return shownType(shown.type);
}

bool QuestionEditor::canAddLevel() const {
    return shown.levels.size() < Veritor::maximumLevels;
}

QString QuestionEditor::yesMeans() const {
    return toQString(shown.yesMeans);
}

QString QuestionEditor::noMeans() const {
    return toQString(shown.noMeans);
}

void QuestionEditor::show(const DecisionQuestion& question) {
    if (question == shown)
        return;
    const DecisionQuestion before = std::exchange(shown, question);
    optionRows.setRows(shown.options);
    if (shown.id == before.id)
        levelRows.setTexts(shown.levels);
    else
        levelRows.replaceTexts(shown.levels);

    if (shown.instructions != before.instructions)
        Q_EMIT instructionsChanged();
    if (shown.name != before.name)
        Q_EMIT nameChanged();
    if (shown.type != before.type)
        Q_EMIT typeChanged();
    if (shown.options.size() != before.options.size() || shown.levels.size() != before.levels.size())
        Q_EMIT countsChanged();
    if (shown.yesMeans != before.yesMeans || shown.noMeans != before.noMeans)
        Q_EMIT meaningsChanged();
}

void QuestionEditor::setType(Type next) {
    change([&](DecisionQuestion& question) { question.type = storedType(next); });
}

void QuestionEditor::editInstructions(const QString& text) {
    change([&](DecisionQuestion& question) { edit(question.instructions, text); });
}

void QuestionEditor::editName(const QString& text) {
    change([&](DecisionQuestion& question) { edit(question.name, text); });
}

void QuestionEditor::editYesMeans(const QString& text) {
    change([&](DecisionQuestion& question) { edit(question.yesMeans, text); });
}

void QuestionEditor::editNoMeans(const QString& text) {
    change([&](DecisionQuestion& question) { edit(question.noMeans, text); });
}

void QuestionEditor::addOption() {
    change([](DecisionQuestion& question) {
        question.options.push_back({.id = UUID::random(), .label = {}, .detail = {}});
    });
}

void QuestionEditor::removeOption(const QString& optionID) {
    change([&](DecisionQuestion& question) {
        const auto option = findRecord(question.options, optionID);
        if (option != question.options.end() && question.options.size() > fewest)
            question.options.erase(option);
    });
}

void QuestionEditor::editOption(const QString& optionID, const QString& text) {
    change([&](DecisionQuestion& question) {
        const auto option = findRecord(question.options, optionID);
        if (option != question.options.end())
            edit(option->label, text);
    });
}

void QuestionEditor::editOptionDetail(const QString& optionID, const QString& text) {
    change([&](DecisionQuestion& question) {
        const auto option = findRecord(question.options, optionID);
        if (option != question.options.end())
            edit(option->detail, text);
    });
}

void QuestionEditor::addLevel() {
    changeLevels([](std::vector<ScoreLevel>& levels) {
        if (levels.size() < Veritor::maximumLevels)
            levels.push_back({UUID::random(), {}});
    });
}

void QuestionEditor::removeLevel(const QString& levelID) {
    changeLevels([&](std::vector<ScoreLevel>& levels) {
        const auto level = findRecord(levels, levelID);
        if (level != levels.end() && levels.size() > fewest)
            levels.erase(level);
    });
}

void QuestionEditor::editLevel(const QString& levelID, const QString& text) {
    changeLevels([&](std::vector<ScoreLevel>& levels) {
        const auto level = findRecord(levels, levelID);
        if (level != levels.end())
            edit(level->text, text);
    });
}

void QuestionEditor::useNumbers(int highest) {
    change([&](DecisionQuestion& question) {
        question.levels.clear();
        for (int number = 1; number <= highest; ++number)
            question.levels.push_back(std::to_string(number));
    });
}

const DecisionQuestion* QuestionEditor::find() const {
    switch (place) {
    case Place::questions: {
        const auto& questions = *model.draftQuestions;
        const auto found =
            std::find_if(questions.begin(), questions.end(),
                         [&](const DecisionQuestion& question) { return question.id == shown.id; });
        return found == questions.end() ? nullptr : &*found;
    }
    case Place::bulkTemplate:
        return model.draftBulkTemplate->id == shown.id ? &*model.draftBulkTemplate : nullptr;
    }
    Q_UNREACHABLE();
}

template <class Edit>
void QuestionEditor::change(Edit apply) {
    const DecisionQuestion* stored = find();
    if (!stored)
        return;
    DecisionQuestion next = *stored;
    apply(next);
    if (next == *stored)
        return;
    switch (place) {
    case Place::questions: {
        std::vector<DecisionQuestion> questions = *model.draftQuestions;
        questions[static_cast<std::size_t>(stored - model.draftQuestions->data())] = next;
        model.draftQuestions = std::move(questions);
        break;
    }
    case Place::bulkTemplate:
        model.draftBulkTemplate = next;
        break;
    }
    show(next);
}

template <class Edit>
void QuestionEditor::changeLevels(Edit apply) {
    const DecisionQuestion* stored = find();
    if (!stored)
        return;
    levelRows.setTexts(stored->levels);
    std::vector<ScoreLevel> levels = levelRows.levels();
    apply(levels);
    levelRows.setRows(levels);
    change([&](DecisionQuestion& question) {
        question.levels.clear();
        for (ScoreLevel& level : levels)
            question.levels.push_back(std::move(level.text));
    });
}

} // namespace quorl
