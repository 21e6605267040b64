#include "screens/ScoresScreen.h"

#include "screens/Strings.h"

#include <QElapsedTimer>

#include <algorithm>
#include <unordered_set>

namespace quorl {

namespace {

// Of the main thread's time, what the scores may take while answers come in: one part in this many.
constexpr int shareOfTime = 5;

QVariantMap choice(const QString& text, const QString& value) {
    return {{QStringLiteral("text"), text}, {QStringLiteral("value"), value}};
}

QVariantMap chip(const QString& symbol, std::size_t value, const QString& label) {
    return {{QStringLiteral("symbol"), symbol},
            {QStringLiteral("value"), QString::number(value)},
            {QStringLiteral("label"), label}};
}

} // namespace

ScoresScreen::ScoresScreen(const ScreenParts& parts) : model(parts.model), services(parts.services) {
    pause.setSingleShot(true);
    connect(&pause, &QTimer::timeout, this, [this] {
        if (isStale)
            refreshScores();
    });
    connect(&parts.adapter, &ModelAdapter::changed, this, &ScoresScreen::refresh);
    refreshCategories();
    refreshScores();
}

QVariantList ScoresScreen::chips() const {
    return {chip(QStringLiteral("cpu"), chipValues.models, tr("models compared")),
            chip(QStringLiteral("checkmarkCircle"), chipValues.judged, tr("judged responses")),
            chip(QStringLiteral("folder"), chipValues.categories, tr("categories"))};
}

void ScoresScreen::setFilter(const QString& categoryID) {
    if (categoryID == shownFilter)
        return;
    shownFilter = categoryID;
    Q_EMIT filterChanged();
    refreshScores();
}

void ScoresScreen::setIncludeChildren(bool included) {
    if (included == includesChildren)
        return;
    includesChildren = included;
    Q_EMIT filterChanged();
    refreshScores();
}

void ScoresScreen::exportCSV() {
    if (!services.fileSaver)
        return;
    const auto rows = categoryRows.count() > 0 ? categoryRows.rows() : overallRows.rows();
    model.exportScores(rows, *services.fileSaver);
}

void ScoresScreen::refresh(const ModelChanges& changes) {
    using enum AppField;
    if (changes.has(AppField::categories))
        refreshCategories();
    if (!changes.hasAny({AppField::categories, runs, answersByRun}))
        return;
    isStale = true;
    if (!pause.isActive())
        refreshScores();
}

void ScoresScreen::refreshCategories() {
    QVariantList next{choice(tr("All categories"), QString())};
    for (const Category& root : model.roots()) {
        next.append(choice(toQString(root.name), toQString(root.id.text())));
        for (const Category& child : model.children(root.id))
            next.append(choice(toQString(root.name + " / " + child.name), toQString(child.id.text())));
    }
    if (next == choices)
        return;
    choices = std::move(next);
    Q_EMIT categoriesChanged();
}

void ScoresScreen::refreshScores() {
    QElapsedTimer spent;
    spent.start();
    isStale = false;
    const std::vector<ScoreInput> inputs = model.scoreInputs();
    const auto filterID = UUID::parse(shownFilter.toStdString());
    const auto subcategories = !filterID || includesChildren ? ScoreMath::Subcategories::included
                                                             : ScoreMath::Subcategories::leftOut;
    const auto rows = [&](ScoreMath::Split split) {
        return ScoreMath::rows(inputs, model.library.categories(), filterID, subcategories, split);
    };
    overallRows.setRows(rows(ScoreMath::Split::none));
    categoryRows.setRows(rows(ScoreMath::Split::byCategory));
    pointRows.setRows(overallRows.rows());

    std::unordered_set<UUID> models;
    std::unordered_set<UUID> categoryIDs;
    ChipValues next;
    next.answers = inputs.size();
    for (const ScoreInput& input : inputs) {
        models.insert(input.modelID);
        if (input.categoryID)
            categoryIDs.insert(*input.categoryID);
        if (input.accepted || input.rating)
            ++next.judged;
    }
    next.models = models.size();
    next.categories = categoryIDs.size();
    chipValues = next;
    Q_EMIT changed();
    pause.start(static_cast<int>(std::min<qint64>(spent.elapsed() * shareOfTime, 2'000)));
}

} // namespace quorl
