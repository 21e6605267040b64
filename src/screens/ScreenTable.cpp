#include "screens/ScreenTable.h"

#include "screens/BlankScreen.h"

#include <utility>

namespace quorl {

namespace {

// The screen whose model is a `Model` of these arguments.
template <class Model, class... Arguments>
VisitedScreen screen(const char* file, Arguments&&... arguments) {
    return {QString::fromLatin1(file), std::make_unique<Model>(std::forward<Arguments>(arguments)...)};
}

VisitedScreen blank(const QString& title) {
    return screen<BlankScreen>("shell/BlankScreen.qml", title);
}

} // namespace

VisitedScreen visit(const Destination& destination, const ScreenParts&) {
    if (std::holds_alternative<RunScreen>(destination))
        return blank(QObject::tr("Comparison"));
    switch (std::get<Screen>(destination)) {
    case Screen::draft:
        break;
    case Screen::history:
        return blank(QObject::tr("History"));
    case Screen::scores:
        return blank(QObject::tr("Performance"));
    case Screen::dataset:
        return blank(QObject::tr("Dataset"));
    case Screen::models:
        return blank(QObject::tr("Models"));
    case Screen::categories:
        return blank(QObject::tr("Categories"));
    case Screen::batches:
        return blank(QObject::tr("API batches"));
    }
    Q_UNREACHABLE();
}

} // namespace quorl
