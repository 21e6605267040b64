#include "screens/HistoryScreen.h"

#include <chrono>
#include <optional>

namespace quorl {

namespace {

using namespace std::chrono_literals;

// A copy: what is done with a run may well move the library's own.
std::optional<QuorlRun> findRun(const AppModel& model, const QString& runID) {
    const auto id = UUID::parse(runID.toStdString());
    const QuorlRun* run = id ? model.library.findRun(*id) : nullptr;
    return run ? std::optional(*run) : std::nullopt;
}

} // namespace

HistoryScreen::HistoryScreen(const ScreenParts& parts)
    : model(parts.model), list(parts.model.library, parts.services.clock) {
    connect(&parts.adapter, &ModelAdapter::changed, &list, &HistoryListModel::refresh);
    connect(&list, &HistoryListModel::shown, this, &HistoryScreen::refreshEmpty);
    connect(&ages, &QTimer::timeout, &list, &HistoryListModel::refreshAges);
    ages.start(1min);
    refreshEmpty();
}

QString HistoryScreen::emptyTitle() const {
    switch (shownEmpty) {
    case Empty::no:
        return {};
    case Empty::noRuns:
        return tr("No comparisons yet");
    case Empty::noMatches:
        return tr("No matches");
    }
    Q_UNREACHABLE();
}

QString HistoryScreen::emptyMessage() const {
    switch (shownEmpty) {
    case Empty::no:
        return {};
    case Empty::noRuns:
        return tr("Completed comparisons will be available here.");
    case Empty::noMatches:
        return tr("Try a different question, category, or model name.");
    }
    Q_UNREACHABLE();
}

QString HistoryScreen::emptySymbol() const {
    switch (shownEmpty) {
    case Empty::no:
        return {};
    case Empty::noRuns:
        return QStringLiteral("clock");
    case Empty::noMatches:
        return QStringLiteral("magnifyingglass");
    }
    Q_UNREACHABLE();
}

void HistoryScreen::refreshEmpty() {
    Empty next = Empty::no;
    if (model.library.runCount() == 0)
        next = Empty::noRuns;
    else if (list.rowCount() == 0 && !list.isSearching())
        next = Empty::noMatches;
    if (next == shownEmpty)
        return;
    shownEmpty = next;
    Q_EMIT emptyChanged();
}

void HistoryScreen::open(const QString& runID) {
    if (const auto run = findRun(model, runID))
        model.openComparison(*run);
}

void HistoryScreen::vary(const QString& runID) {
    if (const auto run = findRun(model, runID))
        model.variation(*run);
}

void HistoryScreen::requestDelete(const QString& runID) {
    if (const auto run = findRun(model, runID))
        model.requestDelete({PendingDelete::Kind::run, run->id});
}

} // namespace quorl
