#include "screens/BatchesScreen.h"

#include "app/HTTPMessage.h"
#include "screens/WindowTest.h"

#include <QAbstractItemModelTester>
#include <QColor>

#include <cmath>

namespace quorl::test {
namespace {

// A batch of a program, with a run for each number and as many answers in it.
class Batches {
public:
    explicit Batches(Harness& filled) : harness(filled) {}

    QuorlBatch add(const std::string& name, RunOrigin source = RunOrigin::api,
                   BatchStatus status = BatchStatus::done) {
        QuorlBatch batch = makeBatch();
        batch.name = name;
        batch.source = source;
        batch.status = status;
        batch.kind = QuorlKind::generation;
        batch.createdAt = harness.clock.now() - std::chrono::hours(3) + std::chrono::minutes(count++);
        harness.file().saveBatch(batch);
        return batch;
    }

    QuorlRun addRun(const QuorlBatch& batch, const std::string& prompt,
                    const std::vector<AnswerState>& states,
                    const std::optional<UUID>& category = std::nullopt) {
        QuorlRun run = makeRun();
        run.categoryID = category;
        run.prompt = prompt;
        run.batchID = batch.id;
        run.createdAt = batch.createdAt + std::chrono::seconds(count++);
        harness.file().insertRun(run);
        std::int64_t position = 0;
        for (const AnswerState state : states) {
            ModelAnswer answer = makeAnswer(run.id, position++);
            answer.state = state;
            harness.file().insertAnswer(answer);
        }
        return run;
    }

private:
    Harness& harness;
    int count = 0;
};

class BatchesScreenTest : public testing::Test {
protected:
    BatchesScreen& open() {
        RootScreen& root = harness.show();
        harness.model().destination = Screen::batches;
        ScreenHarness::endTurn();
        auto* screen = qobject_cast<BatchesScreen*>(root.screen());
        for (QAbstractItemModel* list : {static_cast<QAbstractItemModel*>(screen->batches()),
                                         static_cast<QAbstractItemModel*>(screen->items())})
            testers.push_back(std::make_unique<QAbstractItemModelTester>(
                list, QAbstractItemModelTester::FailureReportingMode::Warning));
        return *screen;
    }

    static std::string cell(const QAbstractItemModel* list, int row, int role) {
        return list->data(list->index(row, 0), role).toString().toStdString();
    }

    ScreenHarness harness;
    Batches batches{harness};
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
};

TEST_F(BatchesScreenTest, ShowsHowProgramsReachTheWorkspace) {
    BatchesScreen& screen = open();
    AppModel& model = harness.model();
    model.apiToken = "0123456789abcdef";
    model.apiMessage = "Listening";
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.baseURL(), QStringLiteral("http://127.0.0.1:47821"));
    EXPECT_EQ(screen.token(), QStringLiteral("0123456789abcdef"));
    EXPECT_EQ(screen.authorization(), QStringLiteral("Authorization: Bearer 0123456789abcdef"));
    EXPECT_EQ(screen.status(), QStringLiteral("Listening"));
    EXPECT_TRUE(screen.isListening());

    model.apiMessage = "Address already in use";
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.status(), QStringLiteral("Address already in use"));
    EXPECT_FALSE(screen.isListening());
}

TEST_F(BatchesScreenTest, CopiesTheURLAndTheToken) {
    BatchesScreen& screen = open();
    harness.model().apiToken = "0123456789abcdef";

    screen.copyURL();
    EXPECT_EQ(harness.clipboard.contents, "http://127.0.0.1:47821");
    screen.copyToken();
    EXPECT_EQ(harness.clipboard.contents, "0123456789abcdef");
}

TEST_F(BatchesScreenTest, ListsTheBatchesOfProgramsNewestFirst) {
    batches.add("Older");
    const QuorlBatch newer = batches.add("Newer");
    batches.addRun(newer, "One", {AnswerState::done});
    batches.addRun(newer, "Two", {AnswerState::done});
    batches.add("Of the window", RunOrigin::app);
    const BatchesScreen& screen = open();
    const auto* list = const_cast<BatchesScreen&>(screen).batches();

    ASSERT_EQ(list->rowCount(), 2);
    EXPECT_EQ(cell(list, 0, BatchListModel::BatchNameRole), "Newer");
    EXPECT_EQ(cell(list, 0, BatchListModel::KindTitleRole), "Generation");
    EXPECT_EQ(cell(list, 0, BatchListModel::RunCountRole), "2");
    EXPECT_EQ(cell(list, 0, BatchListModel::StatusRole), "Done");
    EXPECT_EQ(cell(list, 0, BatchListModel::ProgressRole), "");
    EXPECT_EQ(cell(list, 0, BatchListModel::WhenRole), "2 hr. ago");
    EXPECT_EQ(cell(list, 1, BatchListModel::BatchNameRole), "Older");
    EXPECT_EQ(cell(list, 1, BatchListModel::RunCountRole), "0");
}

TEST_F(BatchesScreenTest, ANameOfManyLinesIsOneInItsRow) {
    batches.add("Night\n  run");
    BatchesScreen& screen = open();

    screen.select(0);
    ScreenHarness::endTurn();

    EXPECT_EQ(cell(screen.batches(), 0, BatchListModel::BatchNameRole), "Night run");
    EXPECT_EQ(screen.title(), QStringLiteral("Night\n  run"));
}

TEST_F(BatchesScreenTest, TellsHowFarARunningBatchHasCome) {
    harness.addReadyModel("one");
    harness.addReadyModel("two", 1);
    BatchesScreen& screen = open();
    AppModel& model = harness.model();

    // No outcome comes in before the loop of the model is let run.
    ASSERT_EQ(model
                  .createAPIBatch(R"({"kind":"generation","name":"Now","items":[{"prompt":"Why?"}]})",
                                  RunOrigin::api, std::nullopt)
                  .status,
              202);
    ScreenHarness::endTurn();

    EXPECT_EQ(cell(screen.batches(), 0, BatchListModel::StatusRole), "Running");
    EXPECT_EQ(cell(screen.batches(), 0, BatchListModel::ProgressRole), "0 of 2");
    EXPECT_EQ(screen.progress(), QStringLiteral("0 of 2 answers"));
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::RunningRole), "Running");

    const UUID run = model.library.runAt(0).id;
    ModelAnswer first = model.library.answersOfRun(run)[0];
    first.state = AnswerState::failed;
    model.library.replaceAnswer(first);
    ScreenHarness::endTurn();

    EXPECT_EQ(cell(screen.batches(), 0, BatchListModel::ProgressRole), "1 of 2");
    EXPECT_EQ(screen.progress(), QStringLiteral("1 of 2 answers"));
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::RunningRole), "Running");
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::FailedRole), "1 failed");
    EXPECT_TRUE(harness.waitFor([&] { return screen.progress().isEmpty(); }));
    EXPECT_EQ(cell(screen.batches(), 0, BatchListModel::StatusRole), "Done");
}

TEST_F(BatchesScreenTest, ShowsTheItemsOfTheSelectedBatchInTheOrderOfPosting) {
    const QuorlBatch batch = batches.add("Night run");
    batches.addRun(batch, "First\n  of two", {AnswerState::failed, AnswerState::done, AnswerState::failed});
    const QuorlRun second = batches.addRun(batch, "Second", {AnswerState::done});
    BatchesScreen& screen = open();

    EXPECT_FALSE(screen.hasBatch());
    screen.select(0);
    ScreenHarness::endTurn();

    EXPECT_TRUE(screen.hasBatch());
    EXPECT_EQ(screen.selectedRow(), 0);
    EXPECT_EQ(screen.title(), QStringLiteral("Night run"));
    EXPECT_EQ(screen.subtitle(), QStringLiteral("API · Generation · Done · 3 hr. ago"));
    EXPECT_EQ(screen.progress(), QString());
    ASSERT_EQ(screen.items()->rowCount(), 2);
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::PromptRole), "First of two");
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::CategoryRole), "Uncategorized");
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::ModelCountRole), "3 models");
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::RunningRole), "");
    EXPECT_EQ(cell(screen.items(), 0, BatchItemListModel::FailedRole), "2 failed");
    EXPECT_EQ(cell(screen.items(), 1, BatchItemListModel::ModelCountRole), "1 models");
    EXPECT_EQ(cell(screen.items(), 1, BatchItemListModel::FailedRole), "");

    screen.openItem(1);

    EXPECT_EQ(*harness.model().destination, Destination(RunScreen{second.id}));
}

TEST_F(BatchesScreenTest, ABatchOfTheWindowIsNotOpenHere) {
    const QuorlBatch batch = batches.add("A list", RunOrigin::app);
    BatchesScreen& screen = open();

    harness.model().selectedBatchID = batch.id;
    ScreenHarness::endTurn();

    EXPECT_FALSE(screen.hasBatch());
    EXPECT_EQ(screen.selectedRow(), -1);
}

TEST_F(BatchesScreenTest, AsksBeforeItDeletesAndThenHasNoneOpen) {
    const QuorlBatch batch = batches.add("Night run");
    BatchesScreen& screen = open();
    screen.select(0);
    ScreenHarness::endTurn();

    screen.requestDelete();
    EXPECT_EQ(*harness.model().pendingDelete, (PendingDelete{PendingDelete::Kind::batch, batch.id}));
    harness.model().confirmDelete();
    ScreenHarness::endTurn();

    EXPECT_FALSE(screen.hasBatch());
    EXPECT_EQ(screen.batches()->rowCount(), 0);
}

class BatchesWindowTest : public WindowTest {
protected:
    void openBatches(QSize size = {1240, 800}) {
        open(size);
        harness.model().destination = Screen::batches;
        settle();
    }

    void post(const std::string& name) {
        const auto reply = harness.model().createAPIBatch(
            R"({"kind":"generation","items":[{"prompt":"Why?"}],"name":")" + name + "\"}", RunOrigin::api,
            std::nullopt);
        ASSERT_EQ(reply.status, 202);
    }

    [[nodiscard]] bool isMarked(const char* row) {
        return find(QString::fromUtf8(row), QAccessible::ListItem)->property("isSelected").toBool();
    }

    bool isDone() {
        return std::ranges::all_of(harness.model().library.batches(),
                                   [](const QuorlBatch& batch) { return batch.status == BatchStatus::done; });
    }

    Batches batches{harness};
};

TEST_F(BatchesWindowTest, SaysWhatWillBeHere) {
    openBatches();

    EXPECT_NE(findText("Batches submitted through the API show up here."), nullptr);
    EXPECT_NE(findText("No batch open"), nullptr);
    EXPECT_NE(
        findText("POST /v1/batches with the token above. Finished items stay in this list, and each one "
                 "opens as a comparison."),
        nullptr);
    EXPECT_NE(findSelectable("http://127.0.0.1:47821"), nullptr);
}

TEST_F(BatchesWindowTest, ShowsHowProgramsReachTheWorkspace) {
    openBatches();
    AppModel& model = harness.model();
    model.apiToken = "0123456789abcdef";
    model.apiMessage = "Listening";
    settle();

    EXPECT_NE(find(QStringLiteral("Batches"), QAccessible::Heading), nullptr);
    EXPECT_NE(findText("API"), nullptr);
    EXPECT_NE(find(QStringLiteral("Local API"), QAccessible::Heading), nullptr);
    EXPECT_NE(findText("Base URL"), nullptr);
    EXPECT_NE(findText("Token"), nullptr);
    EXPECT_NE(findSelectable("0123456789abcdef"), nullptr);
    EXPECT_NE(findSelectable("Authorization: Bearer 0123456789abcdef"), nullptr);
    EXPECT_EQ(findText("Listening")->property("color"), QColor("#3368A0"));

    model.apiMessage = "Address already in use";
    settle();

    EXPECT_EQ(findText("Address already in use")->property("color"), QColor("#B42318"));
}

TEST_F(BatchesWindowTest, TheItemsAreOneStopAndTheArrowsMoveAmongThem) {
    const QuorlBatch batch = batches.add("Night run");
    batches.addRun(batch, "One", {AnswerState::done});
    const QuorlRun second = batches.addRun(batch, "Two", {AnswerState::done});
    batches.addRun(batch, "Three", {AnswerState::done});
    openBatches();
    harness.model().selectedBatchID = batch.id;
    settle();
    findButton("Delete")->forceActiveFocus();

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "One, Uncategorized, 1 models");
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "Three, Uncategorized, 1 models");
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Three, Uncategorized, 1 models");
    press(Qt::Key_Up);
    EXPECT_EQ(focused(), "Two, Uncategorized, 1 models");
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Delete");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Two, Uncategorized, 1 models");
    press(Qt::Key_Return);

    EXPECT_EQ(*harness.model().destination, Destination(RunScreen{second.id}));
}

// Hairlines between two pixels are twice as thick.
TEST_F(BatchesWindowTest, WhatIsScrolledStaysOnWholePixels) {
    const QuorlBatch batch = batches.add("Night run");
    for (int i = 0; i < 20; ++i)
        batches.addRun(batch, "Which way?", {AnswerState::done});
    openBatches({375, 420});
    harness.model().selectedBatchID = batch.id;
    settle();
    findButton("Which way?, Uncategorized, 1 models")->forceActiveFocus();

    press(Qt::Key_End);

    const double top = window().activeFocusItem()->mapToScene({0, 0}).y();
    EXPECT_EQ(top, std::round(top));
    EXPECT_LT(top, 420);
}

TEST_F(BatchesWindowTest, ALongCategoryKeepsClearOfTheEndOfItsRow) {
    const Category category = makeCategory(std::string(200, 'w'), std::nullopt);
    harness.file().saveCategory(category);
    const QuorlBatch batch = batches.add("Night run");
    batches.addRun(batch, "One", {AnswerState::failed}, category.id);
    openBatches();
    harness.model().selectedBatchID = batch.id;
    settle();

    const QQuickItem* item =
        findButton((std::string("One, ") + std::string(200, 'w') + ", 1 models, 1 failed").c_str());
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->height(), 68); // everything stands in two lines
}

TEST_F(BatchesWindowTest, CopiesByItsButtons) {
    openBatches();

    click(findButton("Copy URL"));

    EXPECT_EQ(harness.clipboard.contents, "http://127.0.0.1:47821");
    findButton("Copy token")->forceActiveFocus();
    press(Qt::Key_Return);

    EXPECT_EQ(harness.clipboard.contents, *harness.model().apiToken);
}

TEST_F(BatchesWindowTest, ARowOpensItsBatchAndAnItemItsComparison) {
    const QuorlBatch batch = batches.add("Night run");
    const QuorlRun run = batches.addRun(batch, "Which way?", {AnswerState::done});
    openBatches();

    click(find(QStringLiteral("Night run, Generation, 1, Done, 3 hr. ago"), QAccessible::ListItem));
    EXPECT_EQ(*harness.model().selectedBatchID, batch.id);
    click(findButton("Which way?, Uncategorized, 1 models"));

    EXPECT_EQ(*harness.model().destination, Destination(RunScreen{run.id}));
}

TEST_F(BatchesWindowTest, AnEmptyBatchSaysSo) {
    const QuorlBatch batch = batches.add("Night run");
    openBatches();
    harness.model().selectedBatchID = batch.id;
    settle();

    EXPECT_NE(findText("This batch has no items."), nullptr);
    click(findButton("Delete"));
    EXPECT_EQ(*harness.model().pendingDelete, (PendingDelete{PendingDelete::Kind::batch, batch.id}));
}

TEST_F(BatchesWindowTest, TheMarkIsOnTheNewestBatchHoweverManyCome) {
    addChosenModel("one");
    openBatches();

    for (const char* name : {"First", "Second"}) {
        post(name);
        settle();
    }
    ASSERT_TRUE(harness.waitFor([&] { return isDone(); }));
    settle();

    EXPECT_TRUE(isMarked("Second, Generation, 1, Done, Just now"));
}

TEST_F(BatchesWindowTest, TheMarkStaysWhereTheViewMovesItsOwn) {
    addChosenModel("one");
    openBatches();
    post("First");
    post("Second");
    ASSERT_TRUE(harness.waitFor([&] { return isDone(); }));
    settle();
    QQuickItem* list = find(QStringLiteral("Batches"), QAccessible::List);

    // As it does when rows come in above that it has not laid out yet.
    const int row = list->property("selectedRow").toInt();
    list->setProperty("currentIndex", 1 - row);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->property("currentIndex") == row; }));

    EXPECT_TRUE(isMarked("Second, Generation, 1, Done, Just now"));
}

} // namespace
} // namespace quorl::test
