#pragma once

#include "screens/ModelAdapter.h"
#include "screens/SearchedListModel.h"

#include <qqmlregistration.h>

namespace quorl {

// The saved examples, newest first, in the words of the screen.
class DatasetListModel : public SearchedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DatasetScreen")

public:
    /// `listed` is borrowed and must outlive the list, which is empty until it is loaded.
    explicit DatasetListModel(const Library& listed) : library(listed) {}

    enum Role {
        ExampleIDRole = Qt::UserRole,
        PromptRole,     // its first lines, each run of white space as one blank
        CompletionRole, // likewise
        CategoryRole,
        ModelNameRole,
        JudgmentRole,
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void load();
    [[nodiscard]] bool isLoaded() const { return loaded; }
    void refresh(const ModelChanges& changes);

protected:
    [[nodiscard]] std::string foldedTextOf(const UUID& id) const override;
    [[nodiscard]] bool exists(const UUID& id) const override;

private:
    const Library& library;
    bool loaded = false;
};

} // namespace quorl
