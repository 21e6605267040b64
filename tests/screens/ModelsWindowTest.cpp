#include "screens/ModelsScreen.h"
#include "screens/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>

namespace quorl::test {
namespace {

// The Models screen as a person uses it, by mouse and by keys.
class ModelsWindowTest : public WindowTest {
protected:
    ModelProfile add(ProviderKind provider, const std::string& name) {
        ModelProfile profile = makeModel(provider);
        profile.name = name;
        profile.sortIndex = nextIndex++;
        harness.file().saveModel(profile);
        return profile;
    }

    void openModels(const std::optional<ModelProfile>& selected = std::nullopt, QSize size = {1240, 800}) {
        open(size);
        harness.model().destination = Screen::models;
        if (selected)
            harness.model().selectedModelID = selected->id;
        settle();
    }

    QQuickItem* findRow(const char* name) { return find(QString::fromUtf8(name), QAccessible::ListItem); }
    QQuickItem* findField(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::EditableText);
    }
    // Qt tells no name of a field for passwords.
    QQuickItem* findSecret(const char* description) {
        return findBelow(*window().contentItem(), [&](QQuickItem& item) {
            const auto* accessible = QAccessible::queryAccessibleInterface(&item);
            return accessible && accessible->state().passwordEdit && descriptionOf(&item) == description;
        });
    }
    QQuickItem* findHeading(const char* name) { return find(QString::fromUtf8(name), QAccessible::Heading); }
    QQuickItem* findPicker(const char* name) { return find(QString::fromUtf8(name), QAccessible::ComboBox); }
    QQuickItem* findEntry(const char* name) { return find(QString::fromUtf8(name), QAccessible::MenuItem); }

    // What opens comes in over a few frames.
    void waitForEntry(const char* name) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return findEntry(name) != nullptr; }, 30'000));
    }

    void chooseFrom(QQuickItem* button, const char* entry) {
        click(button);
        waitForEntry(entry);
        click(findEntry(entry));
        ASSERT_TRUE(QTest::qWaitFor([&] { return findEntry(entry) == nullptr; }, 30'000));
        settle();
    }

    void replaceIn(const char* field, const char* text) {
        click(findField(field));
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
    }

    static std::string textOf(QQuickItem* field) { return field->property("text").toString().toStdString(); }
    static QAccessible::State stateOf(QQuickItem* item) {
        return QAccessible::queryAccessibleInterface(item)->state();
    }
    static std::string descriptionOf(QQuickItem* item) {
        return QAccessible::queryAccessibleInterface(item)->text(QAccessible::Description).toStdString();
    }

    const ModelProfile& stored(const ModelProfile& model) {
        return *harness.model().library.findModel(model.id);
    }

    std::vector<std::string> tabStopsFrom(const char* first, int count) {
        for (int stops = 0; focused() != first && stops < 40; ++stops)
            press(Qt::Key_Tab);
        std::vector<std::string> visited{focused()};
        while (--count > 0) {
            press(Qt::Key_Tab);
            const bool isSecret = stateOf(window().activeFocusItem()).passwordEdit;
            visited.push_back(isSecret ? descriptionOf(window().activeFocusItem()) : focused());
        }
        return visited;
    }

private:
    template <class Condition>
    static QQuickItem* findBelow(QQuickItem& item, Condition isIt) {
        if (!item.isVisible())
            return nullptr;
        if (isIt(item))
            return &item;
        for (QQuickItem* child : item.childItems()) {
            if (QQuickItem* found = findBelow(*child, isIt))
                return found;
        }
        return nullptr;
    }

    std::int64_t nextIndex = 0;
};

using Names = std::vector<std::string>;

// --- The list ---

TEST_F(ModelsWindowTest, WithoutASelectionItAsksForAModelEvenIfThereAreSome) {
    add(ProviderKind::openAI, "GPT");
    openModels();
    harness.model().selectedModelID = std::nullopt;
    settle();

    EXPECT_NE(findText("Add a model to start."), nullptr);
    EXPECT_NE(findRow("GPT"), nullptr);
    EXPECT_EQ(findButton("Delete model"), nullptr);
}

TEST_F(ModelsWindowTest, AModelIsAddedFromTheMenuAndShown) {
    add(ProviderKind::openAI, "GPT");
    openModels();

    chooseFrom(find(QStringLiteral("Add"), QAccessible::ButtonMenu), "Anthropic");

    EXPECT_EQ(harness.model().library.models().size(), 2u);
    EXPECT_NE(findHeading(harness.model().library.models()[1].name.c_str()), nullptr);
    EXPECT_EQ(findText("Add a model to start."), nullptr);
}

TEST_F(ModelsWindowTest, AClickSelectsARow) {
    add(ProviderKind::openAI, "GPT");
    const ModelProfile claude = add(ProviderKind::anthropic, "Claude");
    openModels();

    click(findRow("Claude"));

    EXPECT_EQ(*harness.model().selectedModelID, claude.id);
    EXPECT_NE(findHeading("Claude"), nullptr);
    EXPECT_TRUE(stateOf(findRow("Claude")).selected);
    EXPECT_FALSE(stateOf(findRow("GPT")).selected);
    EXPECT_EQ(descriptionOf(findRow("Claude")), "Anthropic · Direct API");
}

TEST_F(ModelsWindowTest, TheListIsOneStopAndTheArrowsSelectInIt) {
    add(ProviderKind::openAI, "One");
    add(ProviderKind::openAI, "Two");
    add(ProviderKind::openAI, "Three");
    openModels();
    click(findRow("Two"));
    EXPECT_EQ(focused(), "Two");

    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Three");
    EXPECT_NE(findHeading("Three"), nullptr);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Three");
    press(Qt::Key_Home);
    EXPECT_EQ(focused(), "One");
    press(Qt::Key_Up);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Two");
    EXPECT_NE(findHeading("Two"), nullptr);

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Enabled");
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Two");
    press(Qt::Key_Return);
    EXPECT_EQ(focused(), "Enabled");
}

TEST_F(ModelsWindowTest, ABlockedModelsDotExplainsItself) {
    const ModelProfile model = add(ProviderKind::openAI, "GPT");
    openModels();

    const std::string obstacle = harness.model().readiness(model).message;
    ASSERT_NE(obstacle, "");
    EXPECT_NE(find(QString::fromStdString(obstacle), QAccessible::Indicator), nullptr);
}

// --- The fields ---

TEST_F(ModelsWindowTest, EachLetterOfEachFieldIsSavedAndTheCaretStays) {
    const ModelProfile model = add(ProviderKind::openAI, "GPT");
    openModels(model);

    for (const char* field : {"Name", "Model id", "Base URL", "Notes"}) {
        replaceIn(field, "13");
        press(Qt::Key_Left);
        type("2");
        type("5");
        EXPECT_EQ(textOf(findField(field)), "1253") << field;
    }

    EXPECT_EQ(stored(model).name, "1253");
    EXPECT_EQ(stored(model).modelIdentifier, "1253");
    EXPECT_EQ(stored(model).endpoint, "1253");
    EXPECT_EQ(stored(model).notes, "1253");
    EXPECT_NE(findHeading("1253"), nullptr);
    EXPECT_NE(findRow("1253"), nullptr);
}

TEST_F(ModelsWindowTest, NumbersAreTypedInTheUsersLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const ModelProfile model = add(ProviderKind::openAI, "GPT");
    openModels(model);

    replaceIn("Input $ / 1M tokens", "0,15");
    replaceIn("Output $ / 1M tokens", "2,5");
    replaceIn("Max output tokens", "2048");

    EXPECT_EQ(stored(model).inputPricePerMillion, 0.15);
    EXPECT_EQ(stored(model).outputPricePerMillion, 2.5);
    EXPECT_EQ(stored(model).maxOutputTokens, 2048);
    EXPECT_EQ(textOf(findField("Input $ / 1M tokens")), "0,15");
    QLocale::setDefault(before);
}

TEST_F(ModelsWindowTest, TheSwitchAndTheProviderAreSavedAndNothingElseChanges) {
    ModelProfile expected = add(ProviderKind::openAI, "GPT");
    openModels(expected);

    click(find(QStringLiteral("Enabled"), QAccessible::CheckBox));
    expected.enabled = false;
    EXPECT_EQ(stored(expected), expected);

    chooseFrom(findPicker("Provider"), "Amazon Bedrock");
    expected.provider = ProviderKind::amazonBedrock;
    EXPECT_EQ(stored(expected), expected);
    EXPECT_EQ(textOf(findField("Region")), "http://127.0.0.1:9/v1");
    EXPECT_EQ(findField("Base URL"), nullptr);
}

TEST_F(ModelsWindowTest, ALocalToolHasAPathInPlaceOfAnEndpoint) {
    const ModelProfile model = add(ProviderKind::codex, "Codex");
    openModels(model);

    replaceIn("Model alias", "m");
    replaceIn("Executable path", "/x");

    EXPECT_EQ(stored(model).modelIdentifier, "m");
    EXPECT_EQ(stored(model).executablePath, "/x");
    EXPECT_EQ(findField("Base URL"), nullptr);
    EXPECT_EQ(findField("Region"), nullptr);
    EXPECT_NE(findText("No API key. This model uses the CLI login on this Mac."), nullptr);
    EXPECT_EQ(findButton("Log in"), nullptr);
    EXPECT_EQ(findButton("Save credentials"), nullptr);
}

TEST_F(ModelsWindowTest, AnotherModelBringsItsOwnTexts) {
    add(ProviderKind::openAI, "One");
    ModelProfile two = add(ProviderKind::openAI, "Two");
    two.notes = "Line one\r\nline two";
    harness.file().saveModel(two);
    openModels();

    click(findRow("One"));
    click(findRow("Two"));
    click(findRow("One"));
    click(findRow("Two"));

    EXPECT_EQ(textOf(findField("Name")), "Two");
    EXPECT_EQ(textOf(findField("Notes")), "Line one\nline two");
    EXPECT_EQ(stored(two), two);
}

TEST_F(ModelsWindowTest, EverythingIsReachedByTabInItsOrder) {
    const ModelProfile model = add(ProviderKind::amazonBedrock, "Nova");
    openModels(model);

    EXPECT_EQ(tabStopsFrom("Add", 17),
              (Names{"Add", "Nova", "Enabled", "Name", "Provider", "Model id", "Region",
                     "Input $ / 1M tokens", "Output $ / 1M tokens", "Max output tokens", "Access key",
                     "Secret key", "Session token, if you use one", "Save credentials", "Notes",
                     "Test connection", "Delete model"}));
}

// --- Credentials ---

TEST_F(ModelsWindowTest, AKeyIsPastedAsDotsSavedAndNeverShown) {
    const ModelProfile model = add(ProviderKind::openAI, "GPT");
    openModels(model);
    EXPECT_FALSE(findButton("Remove credentials")->isEnabled());
    QGuiApplication::clipboard()->setText(QStringLiteral(" sk-secret\n"));

    QQuickItem* field = findSecret("API key");
    click(field);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(stateOf(field).passwordEdit);
    EXPECT_FALSE(field->property("displayText").toString().contains(QStringLiteral("sk")));
    click(findButton("Save credentials"));

    EXPECT_TRUE(*harness.model().secretFlags.find(model.id));
    EXPECT_THAT(harness.keychain.items.at({"com.quorltest.app", model.id.text()}),
                testing::HasSubstr("\"sk-secret\""));
    field = findSecret("API key saved — paste to replace");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(textOf(field), "");
    click(field);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(textOf(field), "");
    EXPECT_TRUE(findButton("Remove credentials")->isEnabled());
}

TEST_F(ModelsWindowTest, RemovedKeysLeaveTheKeyboardInTheField) {
    const ModelProfile model = harness.addReadyModel("GPT");
    openModels(model);

    click(findButton("Remove credentials"));

    EXPECT_FALSE(*harness.model().secretFlags.find(model.id));
    EXPECT_FALSE(findButton("Remove credentials")->isEnabled());
    EXPECT_EQ(window().activeFocusItem(), findSecret("API key"));
}

TEST_F(ModelsWindowTest, SavingNothingIsAnAlert) {
    openModels(add(ProviderKind::openAI, "GPT"));

    click(findButton("Save credentials"));

    EXPECT_EQ(*harness.model().alertMessage, "Paste a key first. A blank field keeps the saved credential.");
}

TEST_F(ModelsWindowTest, APastedKeyGoesWithTheSelection) {
    const ModelProfile one = add(ProviderKind::openAI, "One");
    add(ProviderKind::openAI, "Two");
    openModels(one);
    click(findSecret("API key"));
    type("sk");
    ASSERT_EQ(textOf(findSecret("API key")), "sk");

    click(findRow("Two"));
    click(findRow("One"));

    EXPECT_EQ(textOf(findSecret("API key")), "");
}

TEST_F(ModelsWindowTest, TheThreeKeysOfACloudAccount) {
    const ModelProfile model = add(ProviderKind::amazonBedrock, "Nova");
    openModels(model);
    click(findSecret("Access key"));
    type("a");
    click(findSecret("Secret key"));
    type("b");
    click(findSecret("Session token, if you use one"));
    type("c");

    click(findButton("Save credentials"));

    EXPECT_EQ(*ModelSecret::fromJSON(harness.keychain.items.at({"com.quorltest.app", model.id.text()})),
              (ModelSecret{"", "a", "b", "c"}));
    EXPECT_NE(findSecret("Access key saved — paste to replace"), nullptr);
    EXPECT_NE(findSecret("Secret key saved — paste to replace"), nullptr);
}

TEST_F(ModelsWindowTest, NuvelExplainsWhenAKeyIsNeeded) {
    openModels(add(ProviderKind::nuvel, "Nuvel"));

    EXPECT_NE(findSecret("API key, optional"), nullptr);
    EXPECT_NE(findText("Leave the base URL empty to use local nuvel-rs, the same checkpoint as Ombrel. "
                       "The URL of the hosted API needs an API key."),
              nullptr);
}

TEST_F(ModelsWindowTest, TheLoginAndHowItStands) {
    openModels(add(ProviderKind::claudeCode, "Claude Code"));
    EXPECT_NE(findText("Uses the Claude Code login on this Mac. No API key."), nullptr);
    EXPECT_EQ(findButton("Save credentials"), nullptr);

    harness.model().claudeLoggedIn = false;
    harness.model().claudeLoginStatus = "Waiting for the browser.";
    settle();

    EXPECT_NE(findText("Claude Code on this Mac is not logged in."), nullptr);
    EXPECT_NE(findSelectable("Waiting for the browser."), nullptr);
    harness.model().claudeLoginStatus = std::nullopt;
    click(findButton("Log in"));
    EXPECT_TRUE(*harness.model().claudeLoginStatus);
}

// --- Testing and deleting ---

TEST_F(ModelsWindowTest, ATestShowsItsOutcomeUnderTheButton) {
    harness.endpoint.answer("up", says("pong"));
    const ModelProfile model = harness.addReadyModel("up");
    openModels(model);

    click(findButton("Test connection"));

    ASSERT_TRUE(harness.waitFor([&] { return *harness.model().testStatus.find(model.id) != "Asking…"; }));
    settle();
    EXPECT_NE(findSelectable(harness.model().testStatus.find(model.id)->c_str()), nullptr);
}

TEST_F(ModelsWindowTest, DeletingAsksFirst) {
    const ModelProfile model = add(ProviderKind::openAI, "GPT");
    openModels(model);

    click(findButton("Delete model"));

    EXPECT_EQ(*harness.model().pendingDelete, (PendingDelete{PendingDelete::Kind::model, model.id}));
}

// --- Narrow windows ---

TEST_F(ModelsWindowTest, InANarrowWindowTheListStandsAboveWithFiveRowsAtMost) {
    std::vector<ModelProfile> models;
    for (const char* name : {"A", "B", "C", "D", "E", "F", "G"})
        models.push_back(add(ProviderKind::openAI, name));
    openModels(models[6], {420, 800});

    QQuickItem* list = find(QStringLiteral("Models"), QAccessible::List);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->height(), 5 * 58);
    EXPECT_GT(findField("Name")->mapToScene({}).y(), list->mapToScene({}).y() + list->height());
    EXPECT_EQ(findField("Name")->mapToScene({}).x(), 20);
    EXPECT_EQ(findPicker("Provider")->mapToScene({}).x(), 20);
    EXPECT_NE(findRow("G"), nullptr); // its own scroll has gone to the selected row
}

TEST_F(ModelsWindowTest, FromAWidthOf720OnTheyStandSideBySide) {
    const ModelProfile model = add(ProviderKind::openAI, "GPT");
    openModels(model, {720, 800});
    EXPECT_EQ(findField("Name")->mapToScene({}).x(), 352);

    window().resize(719, 800);
    settle();
    EXPECT_EQ(findField("Name")->mapToScene({}).x(), 32);
}

TEST_F(ModelsWindowTest, EverythingCanBeScrolledToInTheSmallestWindow) {
    openModels(add(ProviderKind::amazonBedrock, "Nova"), {375, 420});

    tabStopsFrom("Delete model", 1);

    ASSERT_EQ(focused(), "Delete model");
    QQuickItem* button = findButton("Delete model");
    EXPECT_LE(button->mapToScene({0, button->height()}).y(), 420);
    EXPECT_GE(button->mapToScene({}).y(), 56);
}

} // namespace
} // namespace quorl::test
