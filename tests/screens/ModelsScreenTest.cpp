#include "screens/ModelsScreen.h"

#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <algorithm>

namespace quorl::test {
namespace {

using Form = CredentialsEditor::Form;

class ModelsScreenTest : public testing::Test {
protected:
    ModelProfile add(ProviderKind provider, const std::string& name = "Test model") {
        ModelProfile profile = makeModel(provider);
        profile.name = name;
        profile.sortIndex = nextIndex++;
        harness.file().saveModel(profile);
        return profile;
    }

    // The screen, with that model selected.
    ModelsScreen& show(const std::optional<ModelProfile>& selected = std::nullopt) {
        RootScreen& root = harness.show();
        root.goTo(RootScreen::Destination::Models);
        if (selected)
            harness.model().selectedModelID = selected->id;
        ScreenHarness::endTurn();
        return screen();
    }

    ModelsScreen& screen() { return *qobject_cast<ModelsScreen*>(harness.root().screen()); }
    ModelEditor& editor() { return *screen().editor(); }
    CredentialsEditor& credentials() { return *screen().credentials(); }

    ModelProfile stored(const UUID& id) {
        const auto all = harness.file().loadModels();
        return *std::find_if(all.begin(), all.end(), [&](const ModelProfile& each) { return each.id == id; });
    }

    std::optional<ModelSecret> secretOf(const UUID& id) {
        const auto item = harness.keychain.items.find({"com.quorltest.app", id.text()});
        return item == harness.keychain.items.end() ? std::nullopt : ModelSecret::fromJSON(item->second);
    }

    void giveSecret(const UUID& id, const ModelSecret& secret) {
        harness.keychain.items[{"com.quorltest.app", id.text()}] = *secret.json();
    }

    std::string row(int place, int role) {
        return screen().models()->data(screen().models()->index(place), role).toString().toStdString();
    }

    ScreenHarness harness;

private:
    std::int64_t nextIndex = 0;
};

// --- The list ---

TEST_F(ModelsScreenTest, ListsTheModelsInTheirOrderWithTheirWay) {
    add(ProviderKind::anthropic, "Zebra");
    add(ProviderKind::claudeCode, "Ant");
    show();

    EXPECT_EQ(screen().models()->rowCount(), 2);
    EXPECT_EQ(row(0, ModelListModel::ModelNameRole), "Zebra");
    EXPECT_EQ(row(0, ModelListModel::WayRole), "Anthropic · Direct API");
    EXPECT_EQ(row(1, ModelListModel::ModelNameRole), "Ant");
    EXPECT_EQ(row(1, ModelListModel::WayRole), "Claude Code · Local CLI");
}

TEST_F(ModelsScreenTest, ARowShowsWhetherItsModelCanBeAsked) {
    const ModelProfile ready = add(ProviderKind::openAI);
    harness.giveKey(ready.id);
    const ModelProfile blocked = add(ProviderKind::openAI);
    ModelProfile disabled = add(ProviderKind::openAI);
    disabled.enabled = false;
    harness.file().saveModel(disabled);
    show();

    EXPECT_EQ(row(0, ModelListModel::ReadinessRole), "ready");
    EXPECT_EQ(row(0, ModelListModel::ObstacleRole), "");
    EXPECT_EQ(row(1, ModelListModel::ReadinessRole), "blocked");
    EXPECT_EQ(row(1, ModelListModel::ObstacleRole), harness.model().readiness(blocked).message);
    EXPECT_NE(row(1, ModelListModel::ObstacleRole), "");
    EXPECT_EQ(row(2, ModelListModel::ReadinessRole), "disabled");
}

TEST_F(ModelsScreenTest, ARowFollowsWhatIsEditedAndSaved) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);
    const QAbstractItemModelTester tester(screen().models());
    const QSignalSpy changes(screen().models(), &QAbstractItemModel::dataChanged);

    editor().setName(QStringLiteral("Renamed"));
    credentials().setAPIKey(QStringLiteral("sk"));
    credentials().save();
    ScreenHarness::endTurn();

    EXPECT_EQ(row(0, ModelListModel::ModelNameRole), "Renamed");
    EXPECT_EQ(row(0, ModelListModel::ReadinessRole), "ready");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ModelsScreenTest, EveryKindCanBeAdded) {
    add(ProviderKind::openAI);
    show();
    std::vector<std::string> titles;
    for (const QVariant& kind : ModelsScreen::kinds())
        titles.push_back(kind.toMap()[QStringLiteral("text")].toString().toStdString());
    EXPECT_EQ(titles,
              (std::vector<std::string>{"Zun", "Nuvel", "OpenAI Decisions", "Veritor", "OpenAI", "Anthropic",
                                        "Amazon Bedrock", "OpenAI-compatible", "Claude Code", "Codex"}));

    for (int kind = 0; kind < 10; ++kind) {
        screen().add(kind);

        EXPECT_EQ(editor().provider(), kind);
        EXPECT_EQ(screen().selectedRow(), kind + 1);
    }
}

TEST_F(ModelsScreenTest, AddingAModelFromAnywhereShowsItHere) {
    add(ProviderKind::openAI);
    harness.show();

    harness.model().addModel(ProviderKind::codex);
    ScreenHarness::endTurn();

    EXPECT_EQ(screen().selectedRow(), 1);
    EXPECT_EQ(editor().name(), QStringLiteral("Codex"));
}

TEST_F(ModelsScreenTest, AClickedRowIsSelectedAndStaysSoElsewhere) {
    add(ProviderKind::openAI, "One");
    const ModelProfile two = add(ProviderKind::openAI, "Two");
    show();

    screen().select(1);
    EXPECT_EQ(*harness.model().selectedModelID, two.id);
    EXPECT_EQ(screen().selectedRow(), 1);
    EXPECT_EQ(editor().name(), QStringLiteral("Two"));

    harness.root().goTo(RootScreen::Destination::History);
    ScreenHarness::endTurn();
    harness.root().goTo(RootScreen::Destination::Models);
    ScreenHarness::endTurn();
    EXPECT_EQ(screen().selectedRow(), 1);
}

// --- The editor ---

TEST_F(ModelsScreenTest, WithoutASelectionThereIsNothingToEdit) {
    add(ProviderKind::openAI);
    show();

    harness.model().selectedModelID = std::nullopt;
    ScreenHarness::endTurn();

    EXPECT_EQ(screen().selectedRow(), -1);
    EXPECT_FALSE(editor().isShown());
    EXPECT_EQ(editor().subtitle(), QString());
}

TEST_F(ModelsScreenTest, ShowsEveryFieldOfTheSelectedModel) {
    show(add(ProviderKind::openAICompatible, "Mine"));

    EXPECT_TRUE(editor().isShown());
    EXPECT_EQ(editor().name(), QStringLiteral("Mine"));
    EXPECT_EQ(editor().subtitle(),
              QStringLiteral("OpenAI-compatible through direct api. The decisions API sends one question and "
                             "records the text, time, tokens, and cost."));
    EXPECT_TRUE(editor().isEnabled());
    EXPECT_EQ(editor().provider(), static_cast<int>(ProviderKind::openAICompatible));
    EXPECT_EQ(editor().modelIdentifier(), QStringLiteral("test-1"));
    EXPECT_EQ(editor().location(), QStringLiteral("http://127.0.0.1:9/v1"));
    EXPECT_EQ(editor().inputPrice(), 2);
    EXPECT_EQ(editor().outputPrice(), 8);
    EXPECT_EQ(editor().maxOutputTokens(), 1024);
    EXPECT_EQ(editor().notes(), QStringLiteral("For tests."));
}

TEST_F(ModelsScreenTest, TheSubtitleSpeaksOfTheDecisionsAPIForEveryKind) {
    ModelProfile model = add(ProviderKind::zun);
    show(model);
    for (const auto& [kind, start] : {
             std::pair(ProviderKind::zun, "Zun through veritor. The decisions API sends"),
             std::pair(ProviderKind::openAIDecisions, "OpenAI Decisions through decisions api. The"),
             std::pair(ProviderKind::codex, "Codex through local cli. The decisions API sends"),
         }) {
        editor().setProvider(static_cast<int>(kind));
        EXPECT_THAT(editor().subtitle().toStdString(), testing::StartsWith(start));
    }
}

TEST_F(ModelsScreenTest, EveryEditChangesThatFieldAloneAndIsSavedAtOnce) {
    ModelProfile expected = add(ProviderKind::openAI);
    const ModelProfile other = add(ProviderKind::openAI);
    show(expected);
    const auto expectSaved = [&] {
        EXPECT_EQ(stored(expected.id), expected);
        EXPECT_EQ(*harness.model().library.findModel(expected.id), expected);
        EXPECT_EQ(stored(other.id), other);
    };

    editor().setEnabled(false);
    expected.enabled = false;
    expectSaved();
    editor().setName(QStringLiteral(" Näme "));
    expected.name = " Näme ";
    expectSaved();
    editor().setModelIdentifier(QStringLiteral("m-2"));
    expected.modelIdentifier = "m-2";
    expectSaved();
    editor().setLocation(QStringLiteral("not a url"));
    expected.endpoint = "not a url";
    expectSaved();
    editor().setInputPrice(0.15);
    expected.inputPricePerMillion = 0.15;
    expectSaved();
    editor().setOutputPrice(-1);
    expected.outputPricePerMillion = -1;
    expectSaved();
    editor().setMaxOutputTokens(64);
    expected.maxOutputTokens = 64;
    expectSaved();
    editor().setNotes(QStringLiteral("Two\nlines"));
    expected.notes = "Two\nlines";
    expectSaved();
    editor().setProvider(static_cast<int>(ProviderKind::amazonBedrock));
    expected.provider = ProviderKind::amazonBedrock;
    expectSaved();
}

TEST_F(ModelsScreenTest, AnEmptyNameIsAName) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);

    editor().setName(QString());

    EXPECT_EQ(stored(model.id).name, "");
}

TEST_F(ModelsScreenTest, ANumberOfTokensBeyondAnIntegerIsTheLargestOne) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);

    editor().setMaxOutputTokens(0x1p63);

    EXPECT_EQ(stored(model.id).maxOutputTokens, std::numeric_limits<std::int64_t>::max());
}

TEST_F(ModelsScreenTest, NotesAreNotRewrittenByTheFieldThatShowsThem) {
    ModelProfile model = add(ProviderKind::openAI);
    model.notes = "Two\r\nlines";
    harness.file().saveModel(model);
    show(model);

    editor().setNotes(QStringLiteral("Two\nlines"));

    EXPECT_EQ(stored(model.id).notes, "Two\r\nlines");
}

TEST_F(ModelsScreenTest, AModelThatHasGoneIsNotWritten) {
    const ModelProfile model = add(ProviderKind::openAI);
    add(ProviderKind::openAI);
    show(model);
    harness.model().pendingDelete = PendingDelete{PendingDelete::Kind::model, model.id};
    harness.model().confirmDelete();

    editor().setName(QStringLiteral("Ghost"));
    editor().test();

    EXPECT_EQ(harness.file().loadModels().size(), 1u);
    EXPECT_EQ(harness.model().library.models().size(), 1u);
    EXPECT_EQ(harness.model().testStatus.find(model.id), nullptr);
}

TEST_F(ModelsScreenTest, AFailureToSaveShowsInTheAlertAndTheEditStays) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE UPDATE ON models BEGIN SELECT RAISE(ABORT, 'no room'); END");

    editor().setName(QStringLiteral("Unsaved"));

    EXPECT_EQ(*harness.model().alertMessage, "no room");
    EXPECT_EQ(editor().name(), QStringLiteral("Unsaved"));
}

TEST_F(ModelsScreenTest, TheLabelsFollowTheKind) {
    show(add(ProviderKind::openAI));
    struct Labels {
        ProviderKind kind;
        const char* identifier;
        const char* placeholder;
        const char* location;
    };
    for (const Labels& expected : {
             Labels{ProviderKind::zun, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::nuvel, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::openAIDecisions, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::veritor, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::openAI, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::anthropic, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::amazonBedrock, "Model id", "Model id", "Region"},
             Labels{ProviderKind::openAICompatible, "Model id", "Model id", "Base URL"},
             Labels{ProviderKind::claudeCode, "Model alias", "Model id", "Executable path"},
             Labels{ProviderKind::codex, "Model alias", "CLI default", "Executable path"},
         }) {
        editor().setProvider(static_cast<int>(expected.kind));
        EXPECT_EQ(editor().identifierLabel().toStdString(), expected.identifier);
        EXPECT_EQ(editor().identifierPlaceholder().toStdString(), expected.placeholder);
        EXPECT_EQ(editor().locationLabel().toStdString(), expected.location);
    }
}

TEST_F(ModelsScreenTest, TheEndpointStaysAsItIsUnderAnotherKindAndIsNotReachedForALocalTool) {
    ModelProfile model = add(ProviderKind::openAI);
    show(model);

    editor().setProvider(static_cast<int>(ProviderKind::amazonBedrock));
    EXPECT_EQ(editor().locationLabel(), QStringLiteral("Region"));
    EXPECT_EQ(editor().location(), QStringLiteral("http://127.0.0.1:9/v1"));

    editor().setProvider(static_cast<int>(ProviderKind::claudeCode));
    EXPECT_EQ(editor().location(), QString());
    editor().setLocation(QStringLiteral("/opt/claude"));
    EXPECT_EQ(stored(model.id).executablePath, "/opt/claude");
    EXPECT_EQ(stored(model.id).endpoint, "http://127.0.0.1:9/v1");
}

TEST_F(ModelsScreenTest, ATestIsOfTheModelAsItNowStandsAndShowsItsOutcome) {
    const ModelProfile model = harness.addReadyModel("old");
    harness.endpoint.answer("new", says("pong"));
    show(model);
    EXPECT_EQ(editor().testStatus(), QString());

    editor().setModelIdentifier(QStringLiteral("new"));
    editor().test();
    EXPECT_EQ(editor().testStatus(), QStringLiteral("Asking…"));
    EXPECT_TRUE(editor().isTesting());

    ASSERT_TRUE(harness.waitFor([&] { return !editor().isTesting(); }));
    EXPECT_THAT(editor().testStatus().toStdString(), testing::EndsWith(" · pong"));
}

TEST_F(ModelsScreenTest, EachModelHasItsOwnTestStatus) {
    const ModelProfile one = add(ProviderKind::openAI);
    add(ProviderKind::openAI);
    show(one);
    harness.model().testStatus.set(one.id, "12 ms · pong");
    ScreenHarness::endTurn();
    EXPECT_EQ(editor().testStatus(), QStringLiteral("12 ms · pong"));

    screen().select(1);
    EXPECT_EQ(editor().testStatus(), QString());
}

TEST_F(ModelsScreenTest, DeletingAsksFirst) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);

    editor().requestDelete();
    EXPECT_EQ(*harness.model().pendingDelete, (PendingDelete{PendingDelete::Kind::model, model.id}));

    harness.model().confirmDelete();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen().models()->rowCount(), 0);
    EXPECT_FALSE(editor().isShown());
}

// --- Credentials ---

TEST_F(ModelsScreenTest, WhatIsNeededFollowsTheKind) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);
    struct Section {
        ProviderKind kind;
        Form form;
        const char* placeholder;
        const char* explanation;
    };
    const char* const nuvel =
        "Leave the base URL empty to use local nuvel-rs, the same checkpoint as Ombrel. "
        "The URL of the hosted API needs an API key.";
    for (const Section& expected : {
             Section{ProviderKind::zun, Form::APIKey, "API key", ""},
             Section{ProviderKind::nuvel, Form::APIKey, "API key, optional", nuvel},
             Section{ProviderKind::openAIDecisions, Form::APIKey, "API key", ""},
             Section{ProviderKind::veritor, Form::APIKey, "API key, optional", ""},
             Section{ProviderKind::openAI, Form::APIKey, "API key", ""},
             Section{ProviderKind::anthropic, Form::APIKey, "API key", ""},
             Section{ProviderKind::openAICompatible, Form::APIKey, "API key", ""},
             Section{ProviderKind::claudeCode, Form::Login, "",
                     "Uses the Claude Code login on this Mac. No API key."},
             Section{ProviderKind::codex, Form::NoKey, "",
                     "No API key. This model uses the CLI login on this Mac."},
             Section{ProviderKind::amazonBedrock, Form::AccessKeys, "", ""},
         }) {
        editor().setProvider(static_cast<int>(expected.kind));
        ScreenHarness::endTurn();
        EXPECT_EQ(credentials().form(), expected.form);
        EXPECT_EQ(credentials().explanation().toStdString(), expected.explanation);
        if (expected.form == Form::APIKey) {
            EXPECT_EQ(credentials().apiKeyPlaceholder().toStdString(), expected.placeholder);
        }
    }
    EXPECT_EQ(credentials().accessKeyPlaceholder(), QStringLiteral("Access key"));
    EXPECT_EQ(credentials().secretKeyPlaceholder(), QStringLiteral("Secret key"));
}

TEST_F(ModelsScreenTest, SavedKeysAreToldAndNotShown) {
    const ModelProfile veritor = add(ProviderKind::veritor);
    const ModelProfile bedrock = add(ProviderKind::amazonBedrock);
    harness.giveKey(veritor.id);
    giveSecret(bedrock.id, {"", "AKIA", "s3cret", "token"});

    show(veritor);
    EXPECT_TRUE(credentials().isSaved());
    EXPECT_EQ(credentials().apiKeyPlaceholder(), QStringLiteral("API key saved — paste to replace"));
    EXPECT_EQ(credentials().apiKey(), QString());

    screen().select(1);
    EXPECT_TRUE(credentials().isSaved());
    EXPECT_EQ(credentials().accessKeyPlaceholder(), QStringLiteral("Access key saved — paste to replace"));
    EXPECT_EQ(credentials().secretKeyPlaceholder(), QStringLiteral("Secret key saved — paste to replace"));
    EXPECT_EQ(credentials().accessKey() + credentials().secretKey() + credentials().sessionToken(),
              QString());
}

TEST_F(ModelsScreenTest, AnAccessKeyAloneDoesNotCountAsSaved) {
    const ModelProfile bedrock = add(ProviderKind::amazonBedrock);
    giveSecret(bedrock.id, {"", "AKIA", "", ""});
    show(bedrock);

    EXPECT_FALSE(credentials().isSaved());
    EXPECT_EQ(credentials().accessKeyPlaceholder(), QStringLiteral("Access key"));
}

TEST_F(ModelsScreenTest, WhetherKeysAreSavedIsAskedAnewForAnotherKind) {
    const ModelProfile model = add(ProviderKind::openAI);
    harness.giveKey(model.id);
    show(model);
    ASSERT_TRUE(credentials().isSaved());

    editor().setProvider(static_cast<int>(ProviderKind::amazonBedrock));
    ScreenHarness::endTurn();

    EXPECT_FALSE(credentials().isSaved());
}

TEST_F(ModelsScreenTest, SavingTrimsThePastedKeyAndEmptiesTheField) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);
    credentials().setAPIKey(QStringLiteral("  sk-new\n"));

    credentials().save();

    EXPECT_EQ(secretOf(model.id), (ModelSecret{"sk-new", "", "", ""}));
    EXPECT_EQ(credentials().apiKey(), QString());
    EXPECT_TRUE(credentials().isSaved());
    EXPECT_EQ(*harness.model().secretFlags.find(model.id), true);
}

TEST_F(ModelsScreenTest, FieldsLeftBlankKeepWhatIsSaved) {
    const ModelProfile bedrock = add(ProviderKind::amazonBedrock);
    giveSecret(bedrock.id, {"", "AKIA", "s3cret", "token"});
    show(bedrock);
    credentials().setAccessKey(QStringLiteral("AKIB"));

    credentials().save();

    EXPECT_EQ(secretOf(bedrock.id), (ModelSecret{"", "AKIB", "s3cret", "token"}));
}

TEST_F(ModelsScreenTest, EveryFieldGoesToItsPlace) {
    const ModelProfile bedrock = add(ProviderKind::amazonBedrock);
    show(bedrock);
    credentials().setAccessKey(QStringLiteral("a"));
    credentials().setSecretKey(QStringLiteral("b"));
    credentials().setSessionToken(QStringLiteral("c"));

    credentials().save();

    EXPECT_EQ(secretOf(bedrock.id), (ModelSecret{"", "a", "b", "c"}));
    EXPECT_EQ(credentials().accessKey() + credentials().secretKey() + credentials().sessionToken(),
              QString());
}

TEST_F(ModelsScreenTest, NothingPastedIsSaidAndChangesNothing) {
    const ModelProfile model = add(ProviderKind::openAI);
    harness.giveKey(model.id);
    show(model);

    credentials().save();

    EXPECT_EQ(*harness.model().alertMessage, "Paste a key first. A blank field keeps the saved credential.");
    EXPECT_EQ(secretOf(model.id), (ModelSecret{"key-of-the-test", "", "", ""}));
}

TEST_F(ModelsScreenTest, OnlySpacesAreAKeyAndStoreAnEmptyField) {
    const ModelProfile model = add(ProviderKind::openAI);
    harness.giveKey(model.id);
    show(model);
    credentials().setAPIKey(QStringLiteral("   "));

    credentials().save();

    EXPECT_FALSE(*harness.model().alertMessage);
    EXPECT_EQ(secretOf(model.id), ModelSecret{});
    EXPECT_FALSE(credentials().isSaved());
}

TEST_F(ModelsScreenTest, RemovingEmptiesBothTheKeychainAndTheField) {
    const ModelProfile model = add(ProviderKind::openAI);
    harness.giveKey(model.id);
    show(model);
    credentials().setAPIKey(QStringLiteral("sk-pasted"));

    credentials().remove();

    EXPECT_EQ(secretOf(model.id), std::nullopt);
    EXPECT_EQ(credentials().apiKey(), QString());
    EXPECT_FALSE(credentials().isSaved());
    EXPECT_EQ(credentials().apiKeyPlaceholder(), QStringLiteral("API key"));
}

TEST_F(ModelsScreenTest, AnotherModelDropsWhatWasPasted) {
    const ModelProfile one = add(ProviderKind::amazonBedrock);
    add(ProviderKind::openAI);
    show(one);
    credentials().setAPIKey(QStringLiteral("k"));
    credentials().setAccessKey(QStringLiteral("a"));
    credentials().setSecretKey(QStringLiteral("b"));
    credentials().setSessionToken(QStringLiteral("c"));

    screen().select(1);

    EXPECT_EQ(credentials().apiKey() + credentials().accessKey() + credentials().secretKey() +
                  credentials().sessionToken(),
              QString());
}

TEST_F(ModelsScreenTest, AnEditOfTheModelKeepsWhatIsPasted) {
    show(add(ProviderKind::openAI));
    credentials().setAPIKey(QStringLiteral("sk-pasted"));

    editor().setName(QStringLiteral("Renamed"));
    editor().setProvider(static_cast<int>(ProviderKind::anthropic));
    ScreenHarness::endTurn();

    EXPECT_EQ(credentials().apiKey(), QStringLiteral("sk-pasted"));
}

TEST_F(ModelsScreenTest, LeavingTheScreenDropsWhatWasPasted) {
    const ModelProfile model = add(ProviderKind::openAI);
    show(model);
    credentials().setAPIKey(QStringLiteral("sk-pasted"));

    harness.root().goTo(RootScreen::Destination::History);
    ScreenHarness::endTurn();
    harness.root().goTo(RootScreen::Destination::Models);
    ScreenHarness::endTurn();

    EXPECT_EQ(credentials().apiKey(), QString());
    EXPECT_EQ(secretOf(model.id), std::nullopt);
}

TEST_F(ModelsScreenTest, AToolThatIsNotLoggedInIsTold) {
    show(add(ProviderKind::claudeCode));

    harness.model().claudeLoggedIn = false;
    harness.model().claudeLoginStatus = "Waiting for the browser.";
    ScreenHarness::endTurn();
    EXPECT_EQ(credentials().explanation(), QStringLiteral("Claude Code on this Mac is not logged in."));
    EXPECT_EQ(credentials().loginStatus(), QStringLiteral("Waiting for the browser."));

    harness.model().claudeLoggedIn = true;
    harness.model().claudeLoginStatus = std::nullopt;
    ScreenHarness::endTurn();
    EXPECT_EQ(credentials().explanation(),
              QStringLiteral("Uses the Claude Code login on this Mac. No API key."));
    EXPECT_EQ(credentials().loginStatus(), QString());
}

} // namespace
} // namespace quorl::test
