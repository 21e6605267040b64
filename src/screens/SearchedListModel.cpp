#include "screens/SearchedListModel.h"

#include "base/Text.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

namespace quorl {

namespace {

using namespace std::chrono_literals;

// Stands in no UTF-8, so in no text that is looked for.
constexpr char betweenTexts = '\xFF';

// How long a key press may take on its search, and how long what follows may hold the event loop up.
constexpr auto firstSlice = 40ms;
constexpr auto laterSlice = 10ms;

// Differences in more places than that are told to views as a new list.
constexpr std::size_t toldInSteps = 64;

// `count` rows from `first` on.
struct Stretch {
    std::size_t first;
    std::size_t count;
};

// What leads from one list to another: rows that go, by their places in the one, and then rows that come, by
// their places in the other.
struct Difference {
    std::vector<Stretch> gone;
    std::vector<Stretch> come;
};

// False once there are too many.
bool extend(std::vector<Stretch>& stretches, std::size_t row) {
    if (!stretches.empty() && stretches.back().first + stretches.back().count == row)
        ++stretches.back().count;
    else
        stretches.push_back({row, 1});
    return stretches.size() <= toldInSteps;
}

// Nothing where it is not worth its steps, or where what stays changes its order.
std::optional<Difference> differenceOf(const std::vector<UUID>& before, const std::vector<UUID>& after) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t start = 0;
    while (start < shorter && before[start] == after[start])
        ++start;
    std::size_t end = 0; // rows that are the same there
    while (end < shorter - start && before[before.size() - 1 - end] == after[after.size() - 1 - end])
        ++end;

    const std::size_t beforeEnd = before.size() - end;
    const std::size_t afterEnd = after.size() - end;
    const std::unordered_set<UUID> staying(after.begin() + static_cast<std::ptrdiff_t>(start),
                                           after.begin() + static_cast<std::ptrdiff_t>(afterEnd));
    Difference difference;
    std::vector<UUID> kept;
    for (std::size_t row = start; row < beforeEnd; ++row) {
        if (staying.contains(before[row]))
            kept.push_back(before[row]);
        else if (!extend(difference.gone, row))
            return std::nullopt;
    }
    std::size_t met = 0;
    for (std::size_t row = start; row < afterEnd; ++row) {
        if (met < kept.size() && kept[met] == after[row])
            ++met;
        else if (!extend(difference.come, row))
            return std::nullopt;
    }
    return met == kept.size() ? std::optional(std::move(difference)) : std::nullopt;
}

} // namespace

SearchedListModel::SearchedListModel() {
    next.setSingleShot(true);
    connect(&next, &QTimer::timeout, this, [this] { searchOn(laterSlice); });
}

int SearchedListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

const UUID& SearchedListModel::idAt(const QModelIndex& index) const {
    return rows[static_cast<std::size_t>(index.row())];
}

void SearchedListModel::search(const QString& text) {
    std::string wanted = Text::folded(Text::trimmed(text.toStdString()));
    if (wanted == needle)
        return;
    needle = std::move(wanted);
    startSearch(Partial::shown);
}

void SearchedListModel::setRecords(std::vector<UUID> all) {
    records = std::move(all);
    startSearch(Partial::kept);
}

void SearchedListModel::searchAgain() {
    if (!needle.empty())
        startSearch(Partial::kept);
}

void SearchedListModel::startSearch(Partial partial) {
    next.stop();
    if (needle.empty()) {
        place = records.size();
        foldedTexts = {}; // as much again as the texts themselves
        show(records);
        return;
    }
    place = 0;
    found.clear();
    partialResults = partial;
    searchOn(firstSlice);
    if (isSearching() && partial == Partial::kept)
        dropGone();
}

void SearchedListModel::searchOn(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    constexpr std::size_t betweenLooksAtTheClock = 32;
    while (place < records.size() && std::chrono::steady_clock::now() < deadline) {
        const std::size_t end = std::min(place + betweenLooksAtTheClock, records.size());
        for (; place < end; ++place) {
            if (matches(records[place]))
                found.push_back(records[place]);
        }
    }
    if (isSearching())
        next.start();
    if (!isSearching() || partialResults == Partial::shown)
        show(found);
}

bool SearchedListModel::matches(const UUID& id) {
    auto entry = foldedTexts.find(id);
    if (entry == foldedTexts.end())
        entry = foldedTexts.emplace(id, foldedTextOf(id)).first;
    return entry->second.find(needle) != std::string::npos;
}

void SearchedListModel::dropGone() {
    auto present = rows;
    std::erase_if(present, [this](const UUID& id) { return !exists(id); });
    show(present);
}

void SearchedListModel::appendFolded(std::string& to, std::string_view text) {
    to += betweenTexts;
    to += Text::folded(text);
}

void SearchedListModel::tellChanged(const QList<int>& roles) {
    if (!rows.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), roles);
}

void SearchedListModel::show(const std::vector<UUID>& wanted) {
    const auto difference = differenceOf(rows, wanted);
    if (!difference) {
        beginResetModel();
        rows = wanted;
        endResetModel();
        Q_EMIT shown();
        return;
    }
    const auto at = [](auto& list, std::size_t row) {
        return list.begin() + static_cast<std::ptrdiff_t>(row);
    };
    for (auto gone = difference->gone.rbegin(); gone != difference->gone.rend(); ++gone) {
        const std::size_t end = gone->first + gone->count;
        beginRemoveRows({}, static_cast<int>(gone->first), static_cast<int>(end - 1));
        rows.erase(at(rows, gone->first), at(rows, end));
        endRemoveRows();
    }
    for (const Stretch& come : difference->come) {
        const std::size_t end = come.first + come.count;
        beginInsertRows({}, static_cast<int>(come.first), static_cast<int>(end - 1));
        rows.insert(at(rows, come.first), at(wanted, come.first), at(wanted, end));
        endInsertRows();
    }
    Q_EMIT shown();
}

} // namespace quorl
