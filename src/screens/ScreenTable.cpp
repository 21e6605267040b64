#include "screens/ScreenTable.h"

#include "screens/BatchesScreen.h"
#include "screens/CategoriesScreen.h"
#include "screens/DatasetScreen.h"
#include "screens/HistoryScreen.h"
#include "screens/ModelsScreen.h"
#include "screens/RunDetailScreen.h"
#include "screens/ScoresScreen.h"

#include <utility>

namespace quorl {

namespace {

// The screen whose model is a `Model` of these arguments.
template <class Model, class... Arguments>
VisitedScreen screen(const char* file, Arguments&&... arguments) {
    return {QString::fromLatin1(file), std::make_unique<Model>(std::forward<Arguments>(arguments)...)};
}

} // namespace

VisitedScreen visit(const Destination& destination, const ScreenParts& parts) {
    if (const auto* const run = std::get_if<RunScreen>(&destination))
        return screen<RunDetailScreen>("answers/RunDetail.qml", run->runID, parts.model, parts.adapter,
                                       parts.services.clipboard, parts.services.clock, parts.announcer);
    switch (std::get<Screen>(destination)) {
    case Screen::draft:
        break;
    case Screen::history:
        return screen<HistoryScreen>("history/HistoryView.qml", parts);
    case Screen::scores:
        return screen<ScoresScreen>("scores/ScoresView.qml", parts);
    case Screen::dataset:
        return screen<DatasetScreen>("dataset/DatasetView.qml", parts);
    case Screen::models:
        return screen<ModelsScreen>("models/ModelsView.qml", parts.model, parts.adapter);
    case Screen::categories:
        return screen<CategoriesScreen>("categories/CategoriesView.qml", parts.model, parts.adapter);
    case Screen::batches:
        return screen<BatchesScreen>("batches/BatchesView.qml", parts);
    }
    Q_UNREACHABLE();
}

} // namespace quorl
