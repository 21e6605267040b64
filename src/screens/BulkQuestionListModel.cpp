#include "screens/BulkQuestionListModel.h"

#include "base/Text.h"
#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

namespace {

bool isLineEnd(QChar character) {
    const char16_t code = character.unicode();
    return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

auto lineEnds(const QString& text) {
    return std::count_if(text.begin(), text.end(), isLineEnd);
}

} // namespace

QVariant BulkQuestionListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const BulkQuestion& question = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case BulkIDRole:
        return toQString(question.id.text());
    case Qt::DisplayRole:
    case TextRole:
        return toQString(question.text);
    default:
        return {};
    }
}

QHash<int, QByteArray> BulkQuestionListModel::roleNames() const {
    return {{BulkIDRole, "bulkID"}, {TextRole, "questionText"}};
}

std::size_t BulkQuestionListModel::filledCount() const {
    return static_cast<std::size_t>(std::count_if(
        rows.begin(), rows.end(), [](const BulkQuestion& row) { return !Text::isBlank(row.text); }));
}

void BulkQuestionListModel::refresh() {
    const std::size_t before = rows.size();
    setRows(*model.draftBulkQuestions);
    if (rows.size() != before)
        Q_EMIT countChanged();
}

void BulkQuestionListModel::edit(const QString& bulkID, const QString& text) {
    const auto place = placeOf(bulkID);
    if (!place)
        return;
    std::vector<BulkQuestion> next = *model.draftBulkQuestions;
    // A question of several lines, as a past comparison may bring it back, stays one row until a paste.
    const bool isPaste = lineEnds(text) > lineEnds(toQString(next[*place].text));
    next[*place].text = text.toStdString();
    model.draftBulkQuestions = std::move(next);
    if (isPaste)
        spread(*place, linesOf(text));
}

void BulkQuestionListModel::add() {
    if (!canAdd())
        return;
    std::vector<BulkQuestion> next = *model.draftBulkQuestions;
    next.emplace_back();
    write(std::move(next));
    Q_EMIT caretRequested(count() - 1);
}

void BulkQuestionListModel::duplicate(const QString& bulkID) {
    const auto place = placeOf(bulkID);
    if (!place || !canAdd())
        return;
    std::vector<BulkQuestion> next = *model.draftBulkQuestions;
    next.push_back({UUID::random(), next[*place].text});
    write(std::move(next));
    Q_EMIT caretRequested(count() - 1);
}

void BulkQuestionListModel::remove(const QString& bulkID) {
    const auto place = placeOf(bulkID);
    if (!place)
        return;
    std::vector<BulkQuestion> next = *model.draftBulkQuestions;
    next.erase(next.begin() + static_cast<std::ptrdiff_t>(*place));
    write(std::move(next));
}

void BulkQuestionListModel::advance(const QString& bulkID) {
    const auto place = placeOf(bulkID);
    if (!place)
        return;
    if (*place + 1 == model.draftBulkQuestions->size())
        return add();
    Q_EMIT caretRequested(static_cast<int>(*place) + 1);
}

void BulkQuestionListModel::append(const QStringList& lines) {
    std::vector<BulkQuestion> next = *model.draftBulkQuestions;
    std::erase_if(next, [](const BulkQuestion& row) { return Text::isBlank(row.text); });
    for (const QString& line : lines)
        next.push_back({UUID::random(), line.toStdString()});
    write(std::move(next));
}

QStringList BulkQuestionListModel::linesOf(const QString& text) {
    QStringList lines;
    for (auto start = text.begin(); start != text.end();) {
        const auto end = std::find_if(start, text.end(), isLineEnd);
        const std::string line = QStringView(start, end).toUtf8().toStdString();
        if (const std::string_view trimmed = Text::trimmed(line); !trimmed.empty())
            lines.append(toQString(trimmed));
        start = end == text.end() ? end : end + 1;
    }
    return lines;
}

void BulkQuestionListModel::spread(std::size_t place, const QStringList& lines) {
    refresh(); // the row has to be told of its first line even if that is all it had before
    std::vector<BulkQuestion> next = *model.draftBulkQuestions;
    next[place].text = lines.isEmpty() ? std::string() : lines.front().toStdString();
    const QStringList others = lines.mid(1);
    const bool fits = next.size() + static_cast<std::size_t>(others.size()) <= Veritor::maximumBulkQuestions;
    if (fits) {
        std::vector<BulkQuestion> added;
        for (const QString& line : others)
            added.push_back({UUID::random(), line.toStdString()});
        next.insert(next.begin() + static_cast<std::ptrdiff_t>(place) + 1, added.begin(), added.end());
    }
    write(std::move(next));
    if (fits)
        Q_EMIT caretRequested(static_cast<int>(place) + static_cast<int>(others.size()));
    else
        Q_EMIT linesOverflowed(others);
}

std::optional<std::size_t> BulkQuestionListModel::placeOf(const QString& bulkID) const {
    const auto id = UUID::parse(bulkID.toStdString());
    const auto& questions = *model.draftBulkQuestions;
    const auto found = std::find_if(questions.begin(), questions.end(),
                                    [&](const BulkQuestion& question) { return question.id == id; });
    if (found == questions.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - questions.begin());
}

void BulkQuestionListModel::write(std::vector<BulkQuestion> next) {
    model.draftBulkQuestions = std::move(next);
    refresh();
}

} // namespace quorl
