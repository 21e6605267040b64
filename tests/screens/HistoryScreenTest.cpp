#include "screens/HistoryScreen.h"

#include "base/Format.h"
#include "decision/Veritor.h"
#include "screens/Announcer.h"
#include "screens/WindowTest.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quorl::test {
namespace {

using Texts = std::vector<std::string>;

// Runs in the file, each a minute older than the one before.
class Runs {
public:
    explicit Runs(Harness& filled) : harness(filled) {}

    QuorlRun add(QuorlRun run) {
        run.createdAt = harness.clock.now() - std::chrono::minutes(10 * ++count);
        harness.file().insertRun(run);
        return run;
    }

    QuorlRun add(const std::string& prompt) {
        QuorlRun run = makeRun();
        run.prompt = prompt;
        return add(std::move(run));
    }

    QuorlRun addDecision(const std::string& name, const std::string& prompt = "Order 48213.") {
        QuorlRun run = makeRun(QuorlKind::decision);
        DecisionQuestion question = DecisionQuestion::starter();
        question.name = name;
        run.prompt = prompt;
        run.questionsJSON = Veritor::archive({question, DecisionQuestion::starter()});
        return add(std::move(run));
    }

    QuorlRun addOfBatch(const UUID& batchID, const std::string& prompt) {
        QuorlRun run = makeRun();
        run.prompt = prompt;
        run.batchID = batchID;
        return add(std::move(run));
    }

    void answer(const QuorlRun& run, const Texts& models) {
        std::int64_t position = 0;
        for (const std::string& model : models) {
            ModelAnswer answer = makeAnswer(run.id, position++);
            answer.modelName = model;
            harness.file().insertAnswer(answer);
        }
    }

private:
    Harness& harness;
    int count = 0;
};

class HistoryScreenTest : public testing::Test {
protected:
    HistoryScreen& open() {
        model = &harness.start();
        adapter = std::make_unique<ModelAdapter>(*model);
        screen = std::make_unique<HistoryScreen>(ScreenParts{*model, *adapter, services, speaker});
        tester = std::make_unique<QAbstractItemModelTester>(
            screen->runs(), QAbstractItemModelTester::FailureReportingMode::Warning);
        return *screen;
    }

    ~HistoryScreenTest() override {
        tester.reset();
        screen.reset();
    }

    std::string shown(int row, int role) {
        return screen->runs()->index(row).data(role).toString().toStdString();
    }

    Texts shownTitles() {
        Texts titles;
        for (int row = 0; row < screen->runs()->rowCount(); ++row)
            titles.push_back(shown(row, HistoryListModel::TitleRole));
        return titles;
    }

    Texts found(const char* text) {
        screen->search(QString::fromUtf8(text));
        return shownTitles();
    }

    UUID addCategory(const std::string& name, const std::optional<UUID>& parent = std::nullopt) {
        const Category category = makeCategory(name, parent);
        harness.file().saveCategory(category);
        return category.id;
    }

    ScreenHarness harness;
    Runs runs{harness};
    ScreenServices services = harness.services();
    Announcer speaker;
    AppModel* model = nullptr;
    std::unique_ptr<ModelAdapter> adapter;
    std::unique_ptr<HistoryScreen> screen;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

// --- The rows ---

TEST_F(HistoryScreenTest, ListsTheNewestRunFirst) {
    runs.add("newest");
    runs.add("middle");
    runs.add("oldest");

    open();

    EXPECT_EQ(shownTitles(), (Texts{"newest", "middle", "oldest"}));
}

TEST_F(HistoryScreenTest, ADecisionIsListedByTheNameOfItsFirstQuestion) {
    runs.addDecision("release_gate");
    QuorlRun damaged = makeRun(QuorlKind::decision);
    damaged.prompt = "Its state";
    damaged.questionsJSON = R"([{"name":)";
    runs.add(damaged);
    runs.addDecision("");

    open();

    EXPECT_EQ(shownTitles(), (Texts{"release_gate", "Its state", ""}));
}

TEST_F(HistoryScreenTest, ATitleIsTheStartOfItsTextInOneLine) {
    runs.add("\n Which way\r\n\tis  up? \n");
    runs.add(std::string(1000, 'w'));
    open();

    EXPECT_EQ(shownTitles(), (Texts{"Which way is up?", std::string(300, 'w')}));
    EXPECT_EQ(shown(0, HistoryListModel::SpokenRole),
              "Which way is up?, Single question, Uncategorized, 0 models, 10 min. ago");
}

TEST_F(HistoryScreenTest, ABatchOf200RunsIsOneRow) {
    const UUID batch = UUID::random();
    for (int i = 0; i < 200; ++i)
        runs.addOfBatch(batch, "question " + std::to_string(i));
    runs.add("another");

    open();

    EXPECT_EQ(shownTitles(), (Texts{"question 0", "another"}));
    EXPECT_EQ(shown(0, HistoryListModel::LabelRole), "Bulk · 200 questions");
}

TEST_F(HistoryScreenTest, TheLabelTellsABatchFromASingleQuestion) {
    runs.add("alone");
    runs.addOfBatch(UUID::random(), "alone in its batch");

    open();

    EXPECT_EQ(shown(0, HistoryListModel::LabelRole), "Single question");
    EXPECT_EQ(shown(1, HistoryListModel::LabelRole), "Bulk · 1 question");
}

TEST_F(HistoryScreenTest, TheDetailsOfARow) {
    const UUID support = addCategory("Support");
    QuorlRun run = makeRun();
    run.categoryID = addCategory("Returns", support);
    run = runs.add(run);
    runs.answer(run, {"Zun", "GPT-4.1", "Claude"});
    runs.answer(runs.add("one"), {"Zun"});
    QuorlRun lost = makeRun();
    lost.categoryID = UUID::random();
    runs.add(lost);

    open();

    EXPECT_EQ(shown(0, HistoryListModel::RunIDRole), run.id.text());
    EXPECT_EQ(shown(0, HistoryListModel::CategoryRole), "Support / Returns");
    EXPECT_EQ(shown(0, HistoryListModel::ModelsRole), "3 models");
    EXPECT_EQ(shown(0, HistoryListModel::WhenRole), "10 min. ago");
    EXPECT_EQ(shown(0, HistoryListModel::SpokenRole),
              "Which way is up?, Single question, Support / Returns, 3 models, 10 min. ago");
    EXPECT_EQ(shown(1, HistoryListModel::CategoryRole), "Uncategorized");
    EXPECT_EQ(shown(1, HistoryListModel::ModelsRole), "1 model");
    EXPECT_EQ(shown(2, HistoryListModel::CategoryRole), "");
    EXPECT_EQ(shown(2, HistoryListModel::ModelsRole), "0 models");
}

// --- The search ---

TEST_F(HistoryScreenTest, FindsByTitlePromptCategoryKindAndModels) {
    QuorlRun run = makeRun();
    run.prompt = "Explain to a new colleague";
    run.categoryID = addCategory("Onboarding", addCategory("Engineering"));
    run = runs.add(run);
    runs.answer(run, {"GPT-4.1", "Claude Sonnet"});
    runs.addDecision("release_gate", "Build 7.2 has two flaky tests.");
    open();

    EXPECT_EQ(found("colleague"), Texts{"Explain to a new colleague"});
    EXPECT_EQ(found("release_"), Texts{"release_gate"});
    EXPECT_EQ(found("flaky"), Texts{"release_gate"});
    EXPECT_EQ(found("engineering / on"), Texts{"Explain to a new colleague"});
    EXPECT_EQ(found("uncategorized"), Texts{"release_gate"});
    EXPECT_EQ(found("decision"), Texts{"release_gate"});
    EXPECT_EQ(found("Generation"), Texts{"Explain to a new colleague"});
    EXPECT_EQ(found("sonnet"), Texts{"Explain to a new colleague"});
    EXPECT_EQ(found("4.1 claude"), Texts{"Explain to a new colleague"}); // across the blank between two names
    EXPECT_EQ(found("4.1  claude"), Texts{});
    EXPECT_EQ(found("answer directly"), Texts{}); // the system prompt
    EXPECT_EQ(found(""), (Texts{"Explain to a new colleague", "release_gate"}));
}

TEST_F(HistoryScreenTest, NothingIsFoundAcrossTwoTexts) {
    runs.add("Why");
    open();

    EXPECT_EQ(found("WhyUncategorized"), Texts{});
    EXPECT_EQ(found("UncategorizedGeneration"), Texts{});
}

TEST_F(HistoryScreenTest, TheSearchIgnoresCaseAndTheWhiteSpaceAroundIt) {
    runs.add("Größe und STRASSE");
    runs.add("ĞÜL");
    open();

    EXPECT_EQ(found("  größe \n"), Texts{"Größe und STRASSE"});
    EXPECT_EQ(found("GRÖSSE"), Texts{"Größe und STRASSE"});
    EXPECT_EQ(found("straße"), Texts{"Größe und STRASSE"});
    EXPECT_EQ(found("ğül"), Texts{"ĞÜL"});
    EXPECT_EQ(found("gul"), Texts{});
    EXPECT_EQ(found(" \t\n").size(), 2u);
}

TEST_F(HistoryScreenTest, TheOlderRunsOfABatchAreNotFound) {
    const UUID batch = UUID::random();
    runs.addOfBatch(batch, "the newest");
    runs.addOfBatch(batch, "an older one");
    open();

    EXPECT_EQ(found("older"), Texts{});
    EXPECT_EQ(found("newest"), Texts{"the newest"});
}

TEST_F(HistoryScreenTest, ALongSearchShowsWhatItHasFoundAndGoesOn) {
    // Letters that are not ASCII, and take their time to fold.
    const std::string alphabet = "АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ";
    std::string prompt;
    while (prompt.size() < 400'000)
        prompt += alphabet;
    for (int i = 0; i < 40; ++i)
        runs.add(prompt);
    open();
    QSignalSpy resets(screen->runs(), &QAbstractItemModel::modelReset);

    screen->search(QStringLiteral("эюя"));

    ASSERT_TRUE(screen->runs()->isSearching());
    EXPECT_GT(screen->runs()->rowCount(), 0);
    EXPECT_LT(screen->runs()->rowCount(), 40);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !screen->runs()->isSearching(); }, 60'000));
    EXPECT_EQ(screen->runs()->rowCount(), 40);
    EXPECT_EQ(resets.count(), 0);

    screen->search(QStringLiteral("nowhere"));
    EXPECT_EQ(screen->runs()->rowCount(), 0);
    EXPECT_FALSE(screen->runs()->isSearching()); // by texts that are folded by now
    EXPECT_EQ(screen->emptyTitle(), QStringLiteral("No matches"));
}

TEST_F(HistoryScreenTest, NothingIsSaidToBeMissingBeforeTheEndOfTheSearch) {
    std::string prompt;
    while (prompt.size() < 400'000)
        prompt += "ДЖ";
    for (int i = 0; i < 40; ++i)
        runs.add(prompt);
    open();

    screen->search(QStringLiteral("nowhere"));

    ASSERT_TRUE(screen->runs()->isSearching());
    EXPECT_EQ(screen->emptyTitle(), QString());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !screen->emptyTitle().isEmpty(); }, 60'000));
    EXPECT_EQ(screen->emptyTitle(), QStringLiteral("No matches"));
}

// --- What stands in place of the list ---

TEST_F(HistoryScreenTest, WithoutRunsThereAreNoComparisonsYet) {
    open();

    EXPECT_EQ(screen->emptyTitle(), QStringLiteral("No comparisons yet"));
    EXPECT_EQ(screen->emptyMessage(), QStringLiteral("Completed comparisons will be available here."));
    EXPECT_EQ(screen->emptySymbol(), QStringLiteral("clock"));
    screen->search(QStringLiteral("x"));
    EXPECT_EQ(screen->emptyTitle(), QStringLiteral("No comparisons yet"));
}

TEST_F(HistoryScreenTest, WithoutARowThatPassesTheSearchThereAreNoMatches) {
    runs.add("Why?");
    open();
    EXPECT_EQ(screen->emptyTitle(), QString());
    QSignalSpy changes(screen.get(), &HistoryScreen::emptyChanged);

    screen->search(QStringLiteral("elephant"));

    EXPECT_EQ(screen->emptyTitle(), QStringLiteral("No matches"));
    EXPECT_EQ(screen->emptyMessage(), QStringLiteral("Try a different question, category, or model name."));
    EXPECT_EQ(screen->emptySymbol(), QStringLiteral("magnifyingglass"));
    screen->search(QString());
    EXPECT_EQ(screen->emptyTitle(), QString());
    EXPECT_EQ(changes.count(), 2);
}

// --- The library changes ---

TEST_F(HistoryScreenTest, ANewRunComesInWithoutAReset) {
    runs.add("older");
    open();
    model->library.reload(harness.file());
    QSignalSpy resets(screen->runs(), &QAbstractItemModel::modelReset);
    QSignalSpy inserted(screen->runs(), &QAbstractItemModel::rowsInserted);

    QuorlRun run = makeRun();
    run.prompt = "newer";
    run.createdAt = harness.clock.now();
    harness.file().insertRun(run);
    model->library.reload(harness.file());
    adapter->deliver();

    EXPECT_EQ(shownTitles(), (Texts{"newer", "older"}));
    EXPECT_EQ(shown(0, HistoryListModel::WhenRole), "Just now");
    EXPECT_EQ(resets.count(), 0);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 0);
}

TEST_F(HistoryScreenTest, ARunThatGoesTakesItsRowAlone) {
    runs.add("first");
    const QuorlRun second = runs.add("second");
    runs.add("third");
    open();
    QSignalSpy resets(screen->runs(), &QAbstractItemModel::modelReset);
    QSignalSpy removed(screen->runs(), &QAbstractItemModel::rowsRemoved);

    model->library.removeRun(second.id);
    EXPECT_EQ(shown(1, HistoryListModel::TitleRole), ""); // until the turn ends
    adapter->deliver();

    EXPECT_EQ(shownTitles(), (Texts{"first", "third"}));
    EXPECT_EQ(resets.count(), 0);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 1);
}

TEST_F(HistoryScreenTest, WithoutItsNewestRunABatchMovesToTheNextOne) {
    const UUID batch = UUID::random();
    const QuorlRun newest = runs.addOfBatch(batch, "newest of three");
    runs.add("between");
    runs.addOfBatch(batch, "second of three");
    const QuorlRun oldest = runs.addOfBatch(batch, "third of three");
    open();
    QSignalSpy resets(screen->runs(), &QAbstractItemModel::modelReset);
    QSignalSpy changed(screen->runs(), &QAbstractItemModel::dataChanged);

    model->library.removeRun(newest.id);
    adapter->deliver();

    EXPECT_EQ(shownTitles(), (Texts{"between", "second of three"}));
    EXPECT_EQ(shown(1, HistoryListModel::LabelRole), "Bulk · 2 questions");
    EXPECT_EQ(resets.count(), 0);

    changed.clear();
    model->library.removeRun(oldest.id);
    adapter->deliver();
    EXPECT_EQ(shown(1, HistoryListModel::LabelRole), "Bulk · 1 question");
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(HistoryScreenTest, AnAnswerMovesNoRow) {
    const QuorlRun run = runs.add("Why?");
    runs.add("older");
    open();
    QSignalSpy resets(screen->runs(), &QAbstractItemModel::modelReset);
    QSignalSpy moved(screen->runs(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(screen->runs(), &QAbstractItemModel::dataChanged);

    model->library.replaceAnswer(makeAnswer(run.id));
    adapter->deliver();

    EXPECT_EQ(shown(0, HistoryListModel::ModelsRole), "1 model");
    EXPECT_EQ(resets.count() + moved.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][2].value<QList<int>>(),
              (QList<int>{HistoryListModel::ModelsRole, HistoryListModel::SpokenRole}));
}

TEST_F(HistoryScreenTest, ASearchFollowsTheLibrary) {
    const UUID category = addCategory("Support");
    QuorlRun run = makeRun();
    run.categoryID = category;
    run = runs.add(run);
    runs.add("Zun is named here");
    open();
    EXPECT_EQ(found("zun"), Texts{"Zun is named here"});

    ModelAnswer answer = makeAnswer(run.id);
    answer.modelName = "Zun";
    model->library.replaceAnswer(answer);
    adapter->deliver();
    EXPECT_EQ(shownTitles(), (Texts{"Which way is up?", "Zun is named here"}));

    EXPECT_EQ(found("returns"), Texts{});
    Category renamed = *model->library.findCategory(category);
    renamed.name = "Returns";
    model->library.replaceCategory(renamed);
    adapter->deliver();
    EXPECT_EQ(shownTitles(), Texts{"Which way is up?"});
    EXPECT_EQ(shown(0, HistoryListModel::CategoryRole), "Returns");

    model->library.removeRun(run.id);
    adapter->deliver();
    EXPECT_EQ(shownTitles(), Texts{});
}

TEST_F(HistoryScreenTest, AFieldOfNoConcernTellsNobody) {
    runs.add("Why?");
    open();
    adapter->deliver();
    QSignalSpy changed(screen->runs(), &QAbstractItemModel::dataChanged);

    model->alertMessage = "Oh.";
    adapter->deliver();

    EXPECT_EQ(changed.count(), 0);
}

TEST_F(HistoryScreenTest, AgesAreToldAgain) {
    runs.add("Why?");
    open();
    EXPECT_EQ(shown(0, HistoryListModel::WhenRole), "10 min. ago");
    QSignalSpy changed(screen->runs(), &QAbstractItemModel::dataChanged);
    harness.clock.advance(std::chrono::hours(1));

    screen->runs()->refreshAges();

    EXPECT_EQ(shown(0, HistoryListModel::WhenRole), "1 hr. ago");
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][2].value<QList<int>>(),
              (QList<int>{HistoryListModel::WhenRole, HistoryListModel::SpokenRole}));
}

// --- What a row does ---

TEST_F(HistoryScreenTest, OpensVariesAndAsksBeforeItDeletes) {
    const QuorlRun run = runs.add("Why?");
    open();
    const QString id = QString::fromStdString(run.id.text());

    screen->requestDelete(id);
    EXPECT_EQ(*model->pendingDelete, (PendingDelete{PendingDelete::Kind::run, run.id}));
    EXPECT_NE(model->library.findRun(run.id), nullptr);

    screen->open(id);
    EXPECT_EQ(*model->activeRunID, run.id);
    EXPECT_EQ(*model->destination, Destination(Screen::draft));

    screen->vary(id);
    EXPECT_EQ(*model->activeRunID, std::nullopt);
    EXPECT_EQ(*model->draftPrompt, "Why?");
}

TEST_F(HistoryScreenTest, NothingHappensToARunThatHasGone) {
    const QuorlRun run = runs.add("Why?");
    open();
    model->destination = Screen::history;
    model->library.removeRun(run.id);
    const QString id = QString::fromStdString(run.id.text());

    screen->open(id);
    screen->vary(id);
    screen->requestDelete(id);
    screen->open(QStringLiteral("no identifier"));

    EXPECT_EQ(*model->destination, Destination(Screen::history));
    EXPECT_EQ(*model->pendingDelete, std::nullopt);
}

// --- The screen itself ---

class HistoryWindowTest : public WindowTest {
protected:
    void openHistory(QSize size = {1240, 800}) {
        open(size);
        harness.root().goTo(RootScreen::Destination::History);
        settle();
    }

    void addMany(int count) {
        for (int i = 0; i < count; ++i)
            runs.add("question " + std::to_string(i));
    }

    QQuickItem* findRow(const char* title) {
        return find(QString::fromUtf8(title) + QLatin1String(", Single question, Uncategorized, 0 models, ") +
                        age(title),
                    QAccessible::ListItem);
    }
    QQuickItem* findActions(const char* title) {
        return find(QLatin1String("Actions for ") + QString::fromUtf8(title), QAccessible::ButtonMenu);
    }
    QQuickItem* findEntry(const char* name) { return find(QString::fromUtf8(name), QAccessible::MenuItem); }

    // The title of the row that has the keyboard.
    std::string focusedRow() {
        const QQuickItem* item = window().activeFocusItem();
        return item ? item->property("title").toString().toStdString() : std::string();
    }

    QQuickItem* findAlert(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::AlertMessage);
    }

    // Until what opens has come, or what closes has gone.
    template <class Condition>
    bool waitFor(Condition isDone) {
        const bool done = QTest::qWaitFor(isDone, 30'000);
        settle();
        return done;
    }
    bool menuComes() {
        return waitFor([this] { return findEntry("Open comparison") != nullptr; });
    }
    bool menuGoes() {
        return waitFor([this] { return findEntry("Open comparison") == nullptr; });
    }

    Runs runs{harness};

private:
    QString age(const char* title) {
        for (const QuorlRun* run : allRuns()) {
            if (run->prompt == title)
                return QString::fromStdString(Format::when(run->createdAt, harness.clock.now()));
        }
        return {};
    }

    std::vector<const QuorlRun*> allRuns() {
        std::vector<const QuorlRun*> all;
        for (std::size_t place = 0; place < harness.model().library.runCount(); ++place)
            all.push_back(&harness.model().library.runAt(place));
        return all;
    }
};

TEST_F(HistoryWindowTest, ShowsItsHeadAndNothingYet) {
    openHistory();

    EXPECT_NE(find(QStringLiteral("History"), QAccessible::Heading), nullptr);
    EXPECT_NE(findText("Reopen a comparison or start a variation."), nullptr);
    EXPECT_NE(find(QStringLiteral("Search comparison history"), QAccessible::EditableText), nullptr);
    EXPECT_NE(findText("No comparisons yet"), nullptr);
    EXPECT_NE(findText("Completed comparisons will be available here."), nullptr);
}

TEST_F(HistoryWindowTest, AClickOnARowOpensItsComparison) {
    addMany(3);
    openHistory();
    QQuickItem* row = findRow("question 1");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(row)->text(QAccessible::Description).toStdString(),
              "Open this comparison in the workspace");
    EXPECT_EQ(row->height(), 68);

    click(row);

    EXPECT_EQ(*harness.model().draftPrompt, "question 1");
    EXPECT_EQ(harness.root().destination(), RootScreen::Destination::Draft);
}

TEST_F(HistoryWindowTest, TypingSearchesAndEscapeEndsIt) {
    addMany(12);
    openHistory();

    click(find(QStringLiteral("Search comparison history"), QAccessible::EditableText));
    type("question 11");
    EXPECT_EQ(findRow("question 1"), nullptr);
    EXPECT_NE(findRow("question 11"), nullptr);
    EXPECT_EQ(focused(), "Search comparison history");

    type("x");
    EXPECT_NE(findText("No matches"), nullptr);
    EXPECT_NE(findText("Try a different question, category, or model name."), nullptr);

    press(Qt::Key_Escape);
    EXPECT_NE(findRow("question 1"), nullptr);
    EXPECT_EQ(findText("No matches"), nullptr);
}

TEST_F(HistoryWindowTest, TheListIsOneStopOfTabAfterTheSearch) {
    addMany(5);
    openHistory();

    click(find(QStringLiteral("Search comparison history"), QAccessible::EditableText));
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedRow(), "question 0");
    press(Qt::Key_Down);
    EXPECT_EQ(focusedRow(), "question 1");
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Search comparison history");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedRow(), "question 1");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedRow(), "");
}

TEST_F(HistoryWindowTest, KeysMoveInTheListAndKeepTheRowInSight) {
    addMany(100);
    openHistory();
    click(find(QStringLiteral("Search comparison history"), QAccessible::EditableText));
    press(Qt::Key_Tab);

    press(Qt::Key_Up);
    EXPECT_EQ(focusedRow(), "question 0");
    press(Qt::Key_PageDown);
    EXPECT_EQ(focusedRow(), "question 8");
    press(Qt::Key_End);
    EXPECT_EQ(focusedRow(), "question 99");
    const auto bottom = window().activeFocusItem()->mapToScene({0, 68}).y();
    EXPECT_GT(bottom, 400);
    EXPECT_LE(bottom, 800);
    press(Qt::Key_Down);
    EXPECT_EQ(focusedRow(), "question 99");
    press(Qt::Key_PageUp);
    EXPECT_EQ(focusedRow(), "question 91");
    press(Qt::Key_Home);
    EXPECT_EQ(focusedRow(), "question 0");
    EXPECT_GT(window().activeFocusItem()->mapToScene({0, 0}).y(), 100);
}

TEST_F(HistoryWindowTest, ReturnOpensTheRow) {
    addMany(2);
    openHistory();
    click(find(QStringLiteral("Search comparison history"), QAccessible::EditableText));
    press(Qt::Key_Tab);
    press(Qt::Key_Down);

    press(Qt::Key_Return);

    EXPECT_EQ(*harness.model().draftPrompt, "question 1");
    EXPECT_NE(*harness.model().activeRunID, std::nullopt);
}

TEST_F(HistoryWindowTest, TheMenuDeletesOnceThatIsConfirmed) {
    addMany(3);
    openHistory();

    click(findActions("question 1"));
    ASSERT_TRUE(menuComes());
    click(findEntry("Delete"));
    EXPECT_TRUE(waitFor([this] { return findAlert("Delete this comparison?") != nullptr; }));
    EXPECT_EQ(harness.model().pendingDelete->value().target, harness.model().library.runAt(1).id);
    harness.model().confirmDelete();

    EXPECT_TRUE(waitFor([this] { return findRow("question 1") == nullptr; }));
    EXPECT_EQ(harness.model().library.runCount(), 2u);
    EXPECT_NE(findRow("question 2"), nullptr);
}

TEST_F(HistoryWindowTest, TheMenuRunsAVariation) {
    addMany(3);
    openHistory();

    click(findActions("question 2"));
    ASSERT_TRUE(menuComes());
    click(findEntry("Run a variation"));

    EXPECT_EQ(*harness.model().draftPrompt, "question 2");
    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
    EXPECT_EQ(harness.root().destination(), RootScreen::Destination::Draft);
}

TEST_F(HistoryWindowTest, TheMenuOpensByKeysAndGivesTheKeyboardBack) {
    addMany(3);
    openHistory();
    click(find(QStringLiteral("Search comparison history"), QAccessible::EditableText));
    press(Qt::Key_Tab);
    press(Qt::Key_Down);

    press(Qt::Key_Menu);
    ASSERT_TRUE(menuComes());
    press(Qt::Key_Escape);
    ASSERT_TRUE(menuGoes());
    EXPECT_EQ(focusedRow(), "question 1");

    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(menuComes());
    press(Qt::Key_Return);
    EXPECT_EQ(*harness.model().draftPrompt, "question 1");
    EXPECT_NE(*harness.model().activeRunID, std::nullopt);
    EXPECT_EQ(harness.root().destination(), RootScreen::Destination::Draft);
}

TEST_F(HistoryWindowTest, APressOfTheRightButtonOpensTheMenuToo) {
    addMany(1);
    openHistory();
    QQuickItem* row = findRow("question 0");
    ASSERT_NE(row, nullptr);

    QTest::mouseClick(&window(), Qt::RightButton, {}, row->mapToScene({100, 30}).toPoint());

    EXPECT_TRUE(menuComes());
    EXPECT_EQ(harness.root().destination(), RootScreen::Destination::History);
}

TEST_F(HistoryWindowTest, ARowThatGoesTakesItsOpenMenuAlong) {
    addMany(2);
    openHistory();
    click(findActions("question 0"));
    ASSERT_TRUE(menuComes());

    harness.model().library.removeRun(harness.model().library.runAt(0).id);

    EXPECT_TRUE(menuGoes());
    EXPECT_EQ(findRow("question 0"), nullptr);
    EXPECT_NE(findRow("question 1"), nullptr);
}

TEST_F(HistoryWindowTest, ANewRunLeavesTheScrolledListWhereItIs) {
    addMany(100);
    openHistory();
    harness.model().library.reload(harness.file());
    click(find(QStringLiteral("Search comparison history"), QAccessible::EditableText));
    press(Qt::Key_Tab);
    for (int i = 0; i < 4; ++i)
        press(Qt::Key_PageDown);
    const std::string row = focusedRow();
    const auto place = window().activeFocusItem()->mapToScene({0, 0}).y();

    QuorlRun run = makeRun();
    run.createdAt = harness.clock.now();
    harness.file().insertRun(run);
    harness.model().library.reload(harness.file());
    settle();

    EXPECT_EQ(harness.model().library.runAt(0).id, run.id);
    EXPECT_EQ(focusedRow(), row);
    EXPECT_EQ(window().activeFocusItem()->mapToScene({0, 0}).y(), place);
}

TEST_F(HistoryWindowTest, InANarrowWindowTheDetailsStandTwoByTwo) {
    addMany(1);
    openHistory({420, 800});

    QQuickItem* label = findText("Single question");
    QQuickItem* category = findText("Uncategorized");
    QQuickItem* models = findText("0 models");
    ASSERT_TRUE(label && category && models);
    EXPECT_EQ(label->y(), category->y());
    EXPECT_EQ(models->x(), label->x());
    EXPECT_GT(models->y(), label->y());
}

TEST_F(HistoryWindowTest, ARowSaysWhatItDoes) {
    addMany(1);
    openHistory();

    QAccessibleInterface* row = QAccessible::queryAccessibleInterface(findRow("question 0"));
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->text(QAccessible::Description), QStringLiteral("Open this comparison in the workspace"));
}

TEST_F(HistoryWindowTest, ATextOfManyLinesKeepsToItsRow) {
    runs.add("First line\nsecond line\nthird line");
    openHistory();

    const QQuickItem* title = findText("First line second line third line");
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->property("lineCount").toInt(), 1);
}

} // namespace
} // namespace quorl::test
