#include "screens/DatasetListModel.h"

#include "app/ScoreMath.h"
#include "screens/Strings.h"

namespace quorl {

namespace {

// More than two lines of the widest window hold, even where much of it is white space.
constexpr std::size_t shownCharacters = 2000;

QString judgment(const DatasetExample& example) {
    if (example.rating)
        return DatasetListModel::tr("%1/10").arg(*example.rating);
    if (!example.accepted)
        return DatasetListModel::tr("Saved");
    return *example.accepted ? DatasetListModel::tr("Accepted") : DatasetListModel::tr("Not accepted");
}

} // namespace

QVariant DatasetListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DatasetExample* example = library.findExample(idAt(index));
    if (!example) // gone, and its row goes with the end of this turn
        return {};
    switch (role) {
    case ExampleIDRole:
        return toQString(example->id.text());
    case Qt::DisplayRole:
    case PromptRole:
        return startOf(example->prompt, shownCharacters);
    case CompletionRole:
        return startOf(example->completion, shownCharacters);
    case CategoryRole:
        return toQString(ScoreMath::categoryName(example->categoryID, library.categories()));
    case ModelNameRole:
        return toQString(example->modelName);
    case JudgmentRole:
        return judgment(*example);
    default:
        return {};
    }
}

QHash<int, QByteArray> DatasetListModel::roleNames() const {
    return {
        {ExampleIDRole, "exampleID"}, {PromptRole, "prompt"},       {CompletionRole, "completion"},
        {CategoryRole, "category"},   {ModelNameRole, "modelName"}, {JudgmentRole, "judgment"},
    };
}

void DatasetListModel::load() {
    std::vector<UUID> all;
    all.reserve(library.dataset().size());
    for (const DatasetExample& example : library.dataset())
        all.push_back(example.id);
    loaded = true;
    setRecords(std::move(all));
}

void DatasetListModel::refresh(const ModelChanges& changes) {
    if (!loaded)
        return;
    if (changes.has(AppField::dataset)) {
        forgetTexts([](const UUID&) { return true; }); // which one it was is not told
        load();
        tellChanged({});
    } else if (changes.has(AppField::categories)) {
        tellChanged({CategoryRole});
    }
}

std::string DatasetListModel::foldedTextOf(const UUID& id) const {
    const DatasetExample* example = library.findExample(id);
    if (!example)
        return {};
    std::string texts;
    appendFolded(texts, example->prompt);
    appendFolded(texts, example->completion);
    appendFolded(texts, example->modelName);
    texts.shrink_to_fit();
    return texts;
}

bool DatasetListModel::exists(const UUID& id) const {
    return library.findExample(id) != nullptr;
}

} // namespace quorl
