#pragma once

#include "base/UUID.h"

#include <QAbstractListModel>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorl {

// A list of records of the library, known by their identifiers alone, of which a search shows those that hold
// a text. What a row shows is read from the library when a view asks for it, so that a large library costs no
// copy of it. A search goes over every record, and longer than a key press may take: it finds what it can at
// once, shows that, and goes on between the events that follow. Thread: main. Failures: none.
class SearchedListModel : public QAbstractListModel {
    Q_OBJECT

public:
    SearchedListModel();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;

    /// Shows the records that hold that text, trimmed and without regard to case; all of them where nothing
    /// is left of it.
    void search(const QString& text);

    /// There are records yet that a search has not looked at.
    [[nodiscard]] bool isSearching() const { return place < records.size(); }

Q_SIGNALS:
    void shown(); // other rows, or the last of a search

protected:
    [[nodiscard]] const UUID& idAt(const QModelIndex& index) const;

    /// All there are, in the order in which they are shown. While something is looked for, the rows on show
    /// stay until all is seen.
    void setRecords(std::vector<UUID> next);
    /// What was folded of those records is outdated. To be followed by one of the two others.
    template <class IsOutdated>
    void forgetTexts(IsOutdated isOutdated) {
        std::erase_if(foldedTexts, [&](const auto& entry) { return isOutdated(entry.first); });
    }
    /// Looks again at what is searched, for records may hold other texts.
    void searchAgain();
    /// Views read that of the rows which they have on show again.
    void tellChanged(const QList<int>& roles);

    /// What a search finds a record by, made with `appendFolded`.
    [[nodiscard]] virtual std::string foldedTextOf(const UUID& id) const = 0;
    [[nodiscard]] virtual bool exists(const UUID& id) const = 0;
    /// Adds one text, apart from those before it: nothing is found across two.
    static void appendFolded(std::string& to, std::string_view text);

private:
    enum class Partial { shown, kept }; // what comes of a search before its end

    void startSearch(Partial partial);
    void searchOn(std::chrono::milliseconds limit);
    [[nodiscard]] bool matches(const UUID& id);
    void dropGone();

    void show(const std::vector<UUID>& next);

    std::vector<UUID> records;
    std::vector<UUID> rows; // those on show
    std::string needle;     // folded; empty while nothing is looked for
    std::size_t place = 0;  // of the record to be looked at next
    Partial partialResults = Partial::shown;
    std::vector<UUID> found;
    std::unordered_map<UUID, std::string> foldedTexts; // while something is looked for
    QTimer next;
};

} // namespace quorl
