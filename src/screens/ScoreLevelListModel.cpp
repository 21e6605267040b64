#include "screens/ScoreLevelListModel.h"

#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

QVariant ScoreLevelListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ScoreLevel& level = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case LevelIDRole:
        return toQString(level.id.text());
    case Qt::DisplayRole:
    case LevelTextRole:
        return toQString(level.text);
    default:
        return {};
    }
}

QHash<int, QByteArray> ScoreLevelListModel::roleNames() const {
    return {{LevelIDRole, "levelID"}, {LevelTextRole, "levelText"}};
}

void ScoreLevelListModel::setTexts(const std::vector<std::string>& texts) {
    const std::size_t shorter = std::min(rows.size(), texts.size());
    std::size_t atEnd = 0;
    while (atEnd < shorter && rows[rows.size() - 1 - atEnd].text == texts[texts.size() - 1 - atEnd])
        ++atEnd;

    std::vector<ScoreLevel> next;
    for (std::size_t place = 0; place < texts.size(); ++place) {
        const std::size_t fromEnd = texts.size() - place;
        UUID id = place < shorter - atEnd ? rows[place].id
                  : fromEnd <= atEnd      ? rows[rows.size() - fromEnd].id
                                          : UUID::random();
        next.push_back({id, texts[place]});
    }
    setRows(next);
}

void ScoreLevelListModel::replaceTexts(const std::vector<std::string>& texts) {
    std::vector<ScoreLevel> next;
    for (const std::string& text : texts)
        next.push_back({UUID::random(), text});
    setRows(next);
}

} // namespace quorl
