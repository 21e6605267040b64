#include "screens/DatasetScreen.h"

#include "screens/Announcer.h"
#include "screens/WindowTest.h"
#include "support/FakeFileSaver.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <fstream>
#include <sstream>

namespace quorl::test {
namespace {

using Texts = std::vector<std::string>;

std::string contentOf(const std::filesystem::path& file) {
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

// Examples in the file, each a minute older than the one before.
class Examples {
public:
    explicit Examples(Harness& filled) : harness(filled) {}

    DatasetExample add(DatasetExample example) {
        example.createdAt = dateFromSeconds(1'790'000'000.0 - 60 * ++count);
        harness.file().insertDataset(example);
        return example;
    }

    DatasetExample add(const std::string& prompt) {
        DatasetExample example = makeExample();
        example.prompt = prompt;
        return add(std::move(example));
    }

private:
    Harness& harness;
    int count = 0;
};

class DatasetScreenTest : public testing::Test {
protected:
    DatasetScreen& open() {
        model = &harness.start();
        adapter = std::make_unique<ModelAdapter>(*model);
        screen = std::make_unique<DatasetScreen>(ScreenParts{*model, *adapter, services, speaker});
        tester = std::make_unique<QAbstractItemModelTester>(
            screen->examples(), QAbstractItemModelTester::FailureReportingMode::Warning);
        return *screen;
    }

    void openList() {
        open();
        screen->toggleExamples();
    }

    ~DatasetScreenTest() override {
        tester.reset();
        screen.reset();
    }

    std::string shown(int row, int role) {
        return screen->examples()->index(row).data(role).toString().toStdString();
    }

    Texts shownPrompts() {
        Texts prompts;
        for (int row = 0; row < screen->examples()->rowCount(); ++row)
            prompts.push_back(shown(row, DatasetListModel::PromptRole));
        return prompts;
    }

    Texts found(const char* text) {
        screen->search(QString::fromUtf8(text));
        return shownPrompts();
    }

    std::string judgmentOf(std::optional<std::int64_t> rating, std::optional<bool> accepted) {
        DatasetExample example = makeExample();
        example.rating = rating;
        example.accepted = accepted;
        examples.add(example);
        openList();
        return shown(screen->examples()->rowCount() - 1, DatasetListModel::JudgmentRole);
    }

    ScreenHarness harness;
    Examples examples{harness};
    FakeFileSaver saver;
    ScreenServices services = [this] {
        ScreenServices offered = harness.services();
        offered.fileSaver = &saver;
        return offered;
    }();
    Announcer speaker;
    AppModel* model = nullptr;
    std::unique_ptr<ModelAdapter> adapter;
    std::unique_ptr<DatasetScreen> screen;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(DatasetScreenTest, CountsItsExamples) {
    open();
    EXPECT_TRUE(screen->isEmpty());
    EXPECT_EQ(screen->count(), QStringLiteral("0 examples"));

    examples.add("one");
    open();
    EXPECT_FALSE(screen->isEmpty());
    EXPECT_EQ(screen->count(), QStringLiteral("1 example"));

    examples.add("two");
    open();
    EXPECT_EQ(screen->count(), QStringLiteral("2 examples"));
}

TEST_F(DatasetScreenTest, TheListStaysClosedUntilItIsAskedFor) {
    examples.add("one");
    open();
    QSignalSpy changes(screen.get(), &DatasetScreen::showsExamplesChanged);
    EXPECT_FALSE(screen->showsExamples());
    EXPECT_EQ(screen->examples()->rowCount(), 0);

    screen->toggleExamples();
    EXPECT_TRUE(screen->showsExamples());
    EXPECT_EQ(screen->examples()->rowCount(), 1);

    screen->toggleExamples();
    EXPECT_FALSE(screen->showsExamples());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(DatasetScreenTest, TheNewestExampleStandsFirst) {
    examples.add("newest");
    examples.add("middle");
    examples.add("oldest");

    openList();

    EXPECT_EQ(shownPrompts(), (Texts{"newest", "middle", "oldest"}));
}

TEST_F(DatasetScreenTest, TheTextsOfARow) {
    const Category support = makeCategory("Support");
    harness.file().saveCategory(support);
    DatasetExample example = makeExample();
    example.prompt = "\n Why\t is\n\n it so? ";
    example.completion = "{\n  \"answers\" : 1\n}";
    example.modelName = "Zun";
    example.categoryID = support.id;
    example = examples.add(example);

    openList();

    EXPECT_EQ(shown(0, DatasetListModel::ExampleIDRole), example.id.text());
    EXPECT_EQ(shown(0, DatasetListModel::PromptRole), "Why is it so?");
    EXPECT_EQ(shown(0, DatasetListModel::CompletionRole), "{ \"answers\" : 1 }");
    EXPECT_EQ(shown(0, DatasetListModel::ModelNameRole), "Zun");
    EXPECT_EQ(shown(0, DatasetListModel::CategoryRole), "Support");
}

TEST_F(DatasetScreenTest, OfALongTextTheStartIsShown) {
    examples.add(std::string(100'000, 'w'));

    openList();

    EXPECT_EQ(shown(0, DatasetListModel::PromptRole), std::string(2000, 'w'));
}

TEST_F(DatasetScreenTest, TheJudgment) {
    EXPECT_EQ(judgmentOf(9, std::nullopt), "9/10");
    EXPECT_EQ(judgmentOf(4, false), "4/10");
    EXPECT_EQ(judgmentOf(10, true), "10/10");
    EXPECT_EQ(judgmentOf(std::nullopt, true), "Accepted");
    EXPECT_EQ(judgmentOf(std::nullopt, false), "Not accepted");
    EXPECT_EQ(judgmentOf(std::nullopt, std::nullopt), "Saved");
}

TEST_F(DatasetScreenTest, FindsByPromptCompletionAndModelAlone) {
    const Category support = makeCategory("Support");
    harness.file().saveCategory(support);
    DatasetExample example = makeExample();
    example.prompt = "Größe?";
    example.completion = "Zwei\nMeter";
    example.modelName = "GPT-4.1";
    example.categoryID = support.id;
    examples.add(example);
    examples.add("another");
    openList();

    EXPECT_EQ(found(" GRÖSSE "), Texts{"Größe?"});
    EXPECT_EQ(found("zwei"), Texts{"Größe?"});
    EXPECT_EQ(found("gpt"), Texts{"Größe?"});
    EXPECT_EQ(found("support"), Texts{});
    EXPECT_EQ(found("?zwei"), Texts{});
    EXPECT_EQ(found("directly"), Texts{}); // the system prompt
    EXPECT_EQ(found("  ").size(), 2u);
}

TEST_F(DatasetScreenTest, ASearchFromBeforeTheListOpensHolds) {
    examples.add("one");
    examples.add("two");
    open();
    screen->search(QStringLiteral("two"));

    screen->toggleExamples();

    EXPECT_EQ(shownPrompts(), Texts{"two"});
}

TEST_F(DatasetScreenTest, FollowsTheLibraryRowByRow) {
    const DatasetExample first = examples.add("first");
    const DatasetExample second = examples.add("second");
    openList();
    QSignalSpy counts(screen.get(), &DatasetScreen::countChanged);
    QSignalSpy resets(screen->examples(), &QAbstractItemModel::modelReset);

    model->library.removeExample(first.id);
    EXPECT_EQ(shown(0, DatasetListModel::PromptRole), ""); // until the turn ends
    adapter->deliver();
    EXPECT_EQ(shownPrompts(), Texts{"second"});
    EXPECT_EQ(screen->count(), QStringLiteral("1 example"));

    DatasetExample judged = second;
    judged.rating = 7;
    model->library.replaceExample(judged);
    adapter->deliver();
    EXPECT_EQ(shown(0, DatasetListModel::JudgmentRole), "7/10");

    model->library.prependExample(makeExample());
    adapter->deliver();
    EXPECT_EQ(shownPrompts(), (Texts{"Which way is up?", "second"}));
    EXPECT_EQ(counts.count(), 2);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(DatasetScreenTest, ASearchFollowsTheLibrary) {
    const DatasetExample example = examples.add("first");
    examples.add("second");
    openList();
    EXPECT_EQ(found("second"), Texts{"second"});

    DatasetExample rewritten = example;
    rewritten.completion = "The second way.";
    model->library.replaceExample(rewritten);
    adapter->deliver();
    EXPECT_EQ(shownPrompts(), (Texts{"first", "second"}));

    model->library.removeExample(example.id);
    adapter->deliver();
    EXPECT_EQ(shownPrompts(), Texts{"second"});
}

TEST_F(DatasetScreenTest, ARenamedCategoryIsShownAtOnce) {
    const Category support = makeCategory("Support");
    harness.file().saveCategory(support);
    DatasetExample example = makeExample();
    example.categoryID = support.id;
    examples.add(example);
    openList();
    QSignalSpy changed(screen->examples(), &QAbstractItemModel::dataChanged);

    Category renamed = support;
    renamed.name = "Help";
    model->library.replaceCategory(renamed);
    adapter->deliver();

    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(shown(0, DatasetListModel::CategoryRole), "Help");
}

TEST_F(DatasetScreenTest, AnExampleThatGoesDuringALongSearchGoesAtOnce) {
    std::string text;
    while (text.size() < 400'000)
        text += "ДЖ";
    const DatasetExample first = examples.add(text);
    for (int i = 0; i < 39; ++i)
        examples.add(text);
    openList();
    screen->search(QStringLiteral("дж"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !screen->examples()->isSearching(); }, 60'000));

    model->library.removeExample(first.id);
    adapter->deliver();

    ASSERT_TRUE(screen->examples()->isSearching());
    EXPECT_EQ(screen->examples()->rowCount(), 39);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !screen->examples()->isSearching(); }, 60'000));
    EXPECT_EQ(screen->examples()->rowCount(), 39);
}

TEST_F(DatasetScreenTest, AsksBeforeItDeletes) {
    const DatasetExample example = examples.add("one");
    openList();

    screen->requestDelete(QString::fromStdString(example.id.text()));

    EXPECT_EQ(*model->pendingDelete, (PendingDelete{PendingDelete::Kind::example, example.id}));
    EXPECT_EQ(screen->examples()->rowCount(), 1);
}

TEST_F(DatasetScreenTest, ExportsAllWhateverIsSearched) {
    examples.add("one");
    examples.add("two");
    openList();
    screen->search(QStringLiteral("two"));

    screen->exportAll();
    ASSERT_TRUE(saver.dialog.has_value());
    EXPECT_EQ(saver.dialog->name, "quorl-dataset.jsonl");
    const auto target = harness.folder.path() / "examples.jsonl";
    saver.choose(target);

    const std::string lines = contentOf(target);
    EXPECT_EQ(std::ranges::count(lines, '\n'), 1); // between two lines
    EXPECT_NE(lines.find("one"), std::string::npos);
    EXPECT_NE(lines.find("two"), std::string::npos);
}

TEST_F(DatasetScreenTest, AFileThatCannotBeWrittenShowsInTheAlert) {
    examples.add("one");
    open();

    screen->exportAll();
    const auto target = harness.folder.path() / "no such folder" / "examples.jsonl";
    saver.choose(target);

    EXPECT_EQ(*model->alertMessage, target.string() + ": No such file or directory");
}

TEST_F(DatasetScreenTest, ACancelledDialogIsNoError) {
    examples.add("one");
    open();

    screen->exportAll();
    saver.cancel();

    EXPECT_EQ(*model->alertMessage, std::nullopt);
    EXPECT_EQ(screen->count(), QStringLiteral("1 example"));
}

TEST_F(DatasetScreenTest, WithoutAWindowNothingIsExported) {
    examples.add("one");
    services.fileSaver = nullptr;
    open();

    screen->exportAll();

    EXPECT_EQ(saver.dialogs, 0);
    EXPECT_EQ(*model->alertMessage, std::nullopt);
}

// --- The screen itself ---

class DatasetWindowTest : public WindowTest {
protected:
    void openDataset(QSize size = {1240, 800}) {
        open(size);
        harness.root().setFileSaver(saver);
        harness.root().goTo(RootScreen::Destination::Dataset);
        settle();
    }

    // Until what moves has come to rest.
    template <class Condition>
    bool waitFor(Condition isDone) {
        const bool done = QTest::qWaitFor(isDone, 30'000);
        settle();
        return done;
    }
    bool listComes() {
        return waitFor([this] { return findSearch() && findSearch()->parentItem()->opacity() == 1; });
    }
    bool listGoes() {
        return waitFor([this] { return findSearch() == nullptr; });
    }
    bool alertComes() {
        return waitFor([this] {
            return find(QStringLiteral("Remove this example from the dataset?"), QAccessible::AlertMessage) !=
                   nullptr;
        });
    }

    void openExamples(QSize size = {1240, 800}) {
        openDataset(size);
        click(findButton("Training set"));
        ASSERT_TRUE(listComes());
    }

    QQuickItem* findRow(const char* prompt) { return find(QString::fromUtf8(prompt), QAccessible::ListItem); }
    QQuickItem* findSearch() { return find(QStringLiteral("Search examples"), QAccessible::EditableText); }

    FakeFileSaver saver;
    Examples examples{harness};
};

TEST_F(DatasetWindowTest, WithoutExamplesItTellsHowToSaveOne) {
    openDataset();

    EXPECT_NE(find(QStringLiteral("Dataset"), QAccessible::Heading), nullptr);
    EXPECT_NE(findText("Nothing saved yet"), nullptr);
    EXPECT_NE(findText("Use the bookmark beside an answer to save it here."), nullptr);
    EXPECT_EQ(findButton("Training set"), nullptr);
    QQuickItem* button = findButton("Export JSONL");
    ASSERT_NE(button, nullptr);
    EXPECT_FALSE(button->isEnabled());
    click(button);
    EXPECT_EQ(saver.dialogs, 0);
}

TEST_F(DatasetWindowTest, TheCardOpensAndClosesTheList) {
    examples.add("Why?");
    openDataset();
    QQuickItem* card = findButton("Training set");
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(card)->text(QAccessible::Description),
              QStringLiteral("1 example"));
    EXPECT_EQ(findRow("Why?"), nullptr);

    click(card);
    ASSERT_TRUE(listComes());
    EXPECT_NE(find(QStringLiteral("Saved examples"), QAccessible::Heading), nullptr);
    EXPECT_NE(findSearch(), nullptr);
    EXPECT_NE(findRow("Why?"), nullptr);
    EXPECT_NE(findText("That way."), nullptr);
    EXPECT_NE(findText("Uncategorized"), nullptr);
    EXPECT_NE(findText("Test model"), nullptr);
    EXPECT_NE(findText("Saved"), nullptr);

    press(Qt::Key_Space);
    EXPECT_TRUE(listGoes());
    EXPECT_EQ(findRow("Why?"), nullptr);
}

TEST_F(DatasetWindowTest, TypingSearches) {
    examples.add("one");
    examples.add("two");
    openExamples();

    click(findSearch());
    type("TW");

    EXPECT_EQ(findRow("one"), nullptr);
    EXPECT_NE(findRow("two"), nullptr);
    EXPECT_EQ(focused(), "Search examples");
}

TEST_F(DatasetWindowTest, TheTrashAsksAndThenRemoves) {
    examples.add("one");
    const DatasetExample second = examples.add("two");
    openExamples();
    QQuickItem* row = findRow("two");
    ASSERT_NE(row, nullptr);

    const QPointF trash(row->width() - 24, 17);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, row->mapToScene(trash).toPoint());
    EXPECT_TRUE(alertComes());
    EXPECT_EQ(harness.model().pendingDelete->value().target, second.id);
    harness.model().confirmDelete();

    EXPECT_TRUE(waitFor([this] { return findRow("two") == nullptr; }));
    EXPECT_NE(findRow("one"), nullptr);
}

TEST_F(DatasetWindowTest, KeysMoveInTheListAndReachTheTrash) {
    examples.add("one");
    const DatasetExample second = examples.add("two");
    examples.add("three");
    openExamples();
    click(findSearch());

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "one");
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "two");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Remove from the dataset");
    press(Qt::Key_Return);
    ASSERT_TRUE(alertComes());
    EXPECT_EQ(harness.model().pendingDelete->value().target, second.id);
    press(Qt::Key_Escape);
    EXPECT_EQ(*harness.model().pendingDelete, std::nullopt);
    EXPECT_TRUE(waitFor([this] { return focused() == "Remove from the dataset"; }));
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "two");
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "three");
    press(Qt::Key_Delete);
    EXPECT_TRUE(alertComes());
    EXPECT_NE(*harness.model().pendingDelete, std::nullopt);
}

TEST_F(DatasetWindowTest, TheButtonExports) {
    examples.add("one");
    openDataset();

    click(findButton("Export JSONL"));

    EXPECT_EQ(saver.dialogs, 1);
}

TEST_F(DatasetWindowTest, TheLastExampleThatGoesLeavesTheInvitation) {
    const DatasetExample only = examples.add("one");
    openExamples();

    harness.model().library.removeExample(only.id);

    EXPECT_TRUE(listGoes());
    EXPECT_NE(findText("Nothing saved yet"), nullptr);
    EXPECT_EQ(findButton("Training set"), nullptr);
}

TEST_F(DatasetWindowTest, LongTextsTakeTwoLines) {
    DatasetExample example = makeExample();
    example.prompt = std::string(3000, 'w');
    example.completion = std::string(3000, 'v');
    examples.add(example);
    openExamples({420, 800});

    QQuickItem* prompt = findText(std::string(2000, 'w').c_str());
    ASSERT_NE(prompt, nullptr);
    EXPECT_EQ(prompt->property("lineCount").toInt(), 2);
    EXPECT_EQ(prompt->height(), 44);
}

TEST_F(DatasetWindowTest, InALowWindowTheWholeScreenScrolls) {
    for (int i = 0; i < 5; ++i)
        examples.add("question " + std::to_string(i));
    openExamples({420, 460});
    click(findSearch());

    press(Qt::Key_Tab);

    ASSERT_EQ(focused(), "question 0");
    const QRectF row = window().activeFocusItem()->mapRectToScene(window().activeFocusItem()->boundingRect());
    EXPECT_GE(row.top(), 56);
    EXPECT_LE(row.bottom(), 460);
}

} // namespace
} // namespace quorl::test
