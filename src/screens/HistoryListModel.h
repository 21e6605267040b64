#pragma once

#include "screens/ModelAdapter.h"
#include "screens/SearchedListModel.h"

#include <qqmlregistration.h>

#include <optional>

namespace quorl {

// Past comparisons, newest first, in the words of the screen. A batch is one row, that of its newest run, and
// a search looks at no other run of it.
class HistoryListModel : public SearchedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by HistoryScreen")

public:
    /// Both are borrowed and must outlive the list. `ages` tells what time it is.
    HistoryListModel(const Library& listed, const Clock& ages);

    enum Role {
        RunIDRole = Qt::UserRole,
        TitleRole, // in one line; may be empty: a question need not have a name
        LabelRole, // "Single question", "Bulk · 24 questions"
        CategoryRole,
        ModelsRole, // "3 models"
        WhenRole,   // "2 hr. ago"
        SpokenRole, // the row as a whole
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void refresh(const ModelChanges& changes);
    /// Time goes by, and what was "Just now" is a minute ago.
    void refreshAges() { tellChanged({WhenRole, SpokenRole}); }

protected:
    [[nodiscard]] std::string foldedTextOf(const UUID& id) const override;
    [[nodiscard]] bool exists(const UUID& id) const override;

private:
    [[nodiscard]] const std::string& categoryPath(const std::optional<UUID>& id) const;
    [[nodiscard]] QString label(const QuorlRun& run) const;
    [[nodiscard]] QString models(const QuorlRun& run) const;
    [[nodiscard]] QString spoken(const QModelIndex& index) const;

    const Library& library;
    const Clock& clock;
    // Few, and every run that is searched has one.
    mutable std::unordered_map<std::optional<UUID>, std::string> categoryPaths;
};

} // namespace quorl
