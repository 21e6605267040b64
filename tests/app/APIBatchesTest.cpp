#include "app/BatchHarness.h"
#include "app/HTTPMessage.h"
#include "decision/Veritor.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class APIBatchesTest : public testing::Test {
protected:
    void SetUp() override {
        first = harness.addReadyModel("first", 0);
        second = harness.addReadyModel("second", 1);
        decider = harness.addDecisionModel("decider", 2);
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    // Neither the file nor a screen nor a provider may have noticed anything.
    void expectRefused(std::string_view body, const std::string& message,
                       const std::optional<QuestionSnapshots>& snapshots = std::nullopt) {
        int changes = 0;
        const auto subscription = model().observe([&](const AppChange&) { ++changes; });

        const HTTPResponse response = model().createAPIBatch(body, RunOrigin::api, snapshots);

        EXPECT_EQ(response.status, 400);
        EXPECT_EQ(Json::parse(response.body), (Json::Value{{"error", message}})) << response.body;
        EXPECT_EQ(changes, 0);
        EXPECT_THAT(harness.file().loadBatches(), IsEmpty());
        EXPECT_THAT(harness.file().loadRuns(), IsEmpty());
        EXPECT_THAT(harness.file().loadAnswers(), IsEmpty());
        EXPECT_THAT(harness.file().loadCategories(), IsEmpty());
        EXPECT_THAT(harness.endpoint.requests(), IsEmpty());
    }

    void expectRefused(const Json::Value& body, const std::string& message) {
        expectRefused(std::string_view(body.dump()), message);
    }

    std::string onlyPrompt(const Json::Value& body) {
        const auto runs = harness.runsOf(harness.postBatch(body));
        EXPECT_EQ(runs.size(), 1u);
        return runs.at(0)->prompt;
    }

    std::vector<std::string> modelNames(const Json::Value& models) {
        Json::Value body = generation({"Up?"});
        body["models"] = models;
        std::vector<std::string> names;
        for (const ModelAnswer& answer : harness.answersOf(harness.postBatch(body), 0))
            names.push_back(answer.modelName);
        return names;
    }

    void expectModelsRefused(const Json::Value& models, const std::string& message) {
        Json::Value body = generation({"Up?"});
        body["models"] = models;
        expectRefused(body, message);
    }

    BatchHarness harness;
    ModelProfile first;
    ModelProfile second;
    ModelProfile decider;
};

Json::Value decision(std::vector<Json::Value> items) {
    return {{"kind", "decision"}, {"items", std::move(items)}};
}

Json::Value with(Json::Value body, const char* key, Json::Value value) {
    body[key] = std::move(value);
    return body;
}

// --- What is no order ---

TEST_F(APIBatchesTest, OnlyAJSONObjectIsABody) {
    for (const char* body :
         {"", " ", "[]", "[{\"items\":[]}]", "7", "null", "{\"items\":[", "{} {}", "{'a':1}"})
        expectRefused(std::string_view(body), "Send a JSON object.");
}

TEST_F(APIBatchesTest, BytesThatAreNotUTF8AreNoJSON) {
    expectRefused(std::string_view("{\"kind\":\"generation\",\"items\":[{\"prompt\":\"\xff\xfe\"}]}"),
                  "Send a JSON object.");
    expectRefused(std::string_view("{\"\xc3\":1}"), "Send a JSON object.");
}

TEST_F(APIBatchesTest, WhatIsNestedTooDeepIsNoJSON) {
    const auto nested = [](std::size_t levels) {
        return R"({"kind":"generation","items":[{"prompt":"Up?"}],"ignored":)" + std::string(levels, '[') +
               std::string(levels, ']') + "}";
    };
    expectRefused(std::string_view(nested(512)), "Send a JSON object.");
    expectRefused(std::string_view(nested(1'000'000)), "Send a JSON object.");

    EXPECT_EQ(harness.postText(nested(511)).status, 202);
}

TEST_F(APIBatchesTest, TheKindComesBeforeTheItems) {
    expectRefused(Json::Value{{"kind", "x"}}, "kind must be decision or generation.");
    for (const char* kind : {"", "Decision", " decision", "GENERATION"})
        expectRefused(with(generation({"Up?"}), "kind", kind), "kind must be decision or generation.");
}

TEST_F(APIBatchesTest, AKindThatIsNoTextIsADecision) {
    for (const Json::Value& kind : {Json::Value(7), Json::Value(), Json::Value::array({"generation"})})
        expectRefused(with(generation({"Up?"}), "kind", kind), "Item 1 needs Veritor questions.");
}

TEST_F(APIBatchesTest, ItemsAreAnArrayOfObjectsWithAtLeastOne) {
    expectRefused(Json::Value::object(), "Add at least one item.");
    for (const char* items : {"null", "[]", "{}", "\"Up?\"", "3", "[\"Up?\"]", "[{\"prompt\":\"Up?\"},7]",
                              "[null]", "[[]]", "{\"prompt\":\"Up?\"}"})
        expectRefused(Json::Value{{"items", Json::Value::parse(items)}}, "Add at least one item.");
}

TEST_F(APIBatchesTest, TwoHundredItemsAreTheMost) {
    expectRefused(generation(std::vector<std::string>(201, "Up?")), "A batch can hold 200 items.");
    // Not looked at, since there are too many of them.
    expectRefused(generation(std::vector<std::string>(201, "")), "A batch can hold 200 items.");

    const UUID batch =
        harness.postBatch(with(generation(std::vector<std::string>(200, "Up?")), "models", "first"));
    EXPECT_EQ(harness.runsOf(batch).size(), 200u);
}

TEST_F(APIBatchesTest, TooManyItemsComeBeforeTheirSnapshots) {
    expectRefused(generation(std::vector<std::string>(201, "Up?")).dump(), "A batch can hold 200 items.",
                  QuestionSnapshots(1));
}

TEST_F(APIBatchesTest, SnapshotsMatchTheItemsBeforeAnythingElseIsLookedAt) {
    const Json::Value body = with(decision({{{"state", "Rain"}}}), "subcategory", "Weather");
    expectRefused(body.dump(), "Question snapshots must match batch items.", QuestionSnapshots{});
    expectRefused(body.dump(), "Question snapshots must match batch items.", QuestionSnapshots(2));
}

TEST_F(APIBatchesTest, ASubcategoryNeedsACategory) {
    const Json::Value body = with(with(generation({""}), "subcategory", " Refunds "), "models", 7);
    expectRefused(body, "Type a category before a subcategory.");
    expectRefused(with(body, "category", " \t\n"), "Type a category before a subcategory.");
    expectRefused(with(body, "category", 7), "Type a category before a subcategory.");
}

TEST_F(APIBatchesTest, TheModelsComeBeforeTheItemsContents) {
    expectRefused(with(generation({""}), "models", 7), "models must be a list of names or ids.");
}

TEST_F(APIBatchesTest, WithoutAReadyModelTheKindIsNamed) {
    for (const ModelProfile& profile : std::vector(model().library.models())) {
        ModelProfile off = profile;
        off.enabled = false;
        model().replaceModel(off);
    }

    expectRefused(generation({""}), "No ready generation models.");
    expectRefused(decision({{{"state", ""}}}), "No ready decision models.");
    expectRefused(with(generation({""}), "models", Json::Value::array()), "No ready generation models.");
}

TEST_F(APIBatchesTest, TheFirstItemThatIsWrongEndsTheRequest) {
    expectRefused(generation({"Up?", " \n\u2003", ""}), "Item 2 needs a prompt.");
    expectRefused(decision({{{"state", "Rain"}, {"questions", yesOrNo()}},
                            {{"state", "Sun"}},
                            {{"state", ""}, {"questions", yesOrNo()}}}),
                  "Item 2 needs Veritor questions.");
    expectRefused(decision({{{"state", "Rain"}, {"questions", yesOrNo()}},
                            {{"state", " "}, {"questions", yesOrNo()}},
                            {{"state", "Sun"}}}),
                  "Item 2: Write the state this decision is about.");
}

TEST_F(APIBatchesTest, QuestionsThatCannotBeReadAreNone) {
    for (const char* questions :
         {"null", "[]", "{}", "\"wet?\"", "7", R"({"wet":{"type":"noul"}})", R"({"wet":"Is it wet?"})",
          R"({"wet":{"type":"maybe","instructions":"Is it wet?"}})"})
        expectRefused(decision({{{"state", "Rain"}, {"questions", Json::Value::parse(questions)}}}),
                      "Item 1 needs Veritor questions.");
}

TEST_F(APIBatchesTest, WhatIsWrongWithTheQuestionsIsToldWithTheItem) {
    Json::Value questions = Json::Value::object();
    for (int i = 0; i < 33; ++i)
        questions["q" + std::to_string(i)] = yesOrNo()["wet"];
    expectRefused(decision({{{"state", "Rain"}, {"questions", questions}}}),
                  "Item 1: Veritor accepts at most 32 questions.");
    expectRefused(
        decision({{{"state", "Rain"},
                   {"questions",
                    {{"what",
                      {{"type", "choice"}, {"instructions", "What now?"}, {"criteria", {"Go", " Go "}}}}}}}}),
        "Item 1: Choice options need different names.");
}

TEST_F(APIBatchesTest, SnapshotsAreValidatedToo) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.type = DecisionQuestionType::noul;
    expectRefused(decision({{{"state", "Rain"}, {"questions", yesOrNo()}}}).dump(),
                  "Item 1: Write the question text.", QuestionSnapshots{{question}});
    expectRefused(decision({{{"state", "Rain"}, {"questions", yesOrNo()}}}).dump(), "Item 1: Add a question.",
                  QuestionSnapshots(1));
}

TEST_F(APIBatchesTest, AKeychainIsNotAskedForABatchThatIsRefused) {
    const int before = harness.keychain.copies;
    expectRefused(generation({""}), "Item 1 needs a prompt.");
    EXPECT_EQ(harness.keychain.copies, before);
}

// --- Which models ---

TEST_F(APIBatchesTest, WithoutNamesAllReadyModelsOfTheKindAnswerInListOrder) {
    ModelProfile off = second;
    off.enabled = false;
    model().replaceModel(off);
    model().addModel(ProviderKind::openAI); // without a key
    ModelProfile last = model().library.models().back();
    last.name = "keyless";
    model().replaceModel(last);

    for (const Json::Value& models : {Json::Value(), Json::Value::array()})
        EXPECT_THAT(modelNames(models), ElementsAre("first"));
    EXPECT_EQ(harness.answersOf(harness.postBatch(generation({"Up?"})), 0).size(), 1u);
    model().replaceModel(second);
    EXPECT_THAT(modelNames({}), ElementsAre("first", "second"));
    const UUID asked = harness.postBatch(decision({{{"state", "Rain"}, {"questions", yesOrNo()}}}));
    EXPECT_EQ(harness.answersOf(asked, 0).at(0).modelID, decider.id);
}

TEST_F(APIBatchesTest, ModelsAreNamedInTheOrderInWhichTheyAnswer) {
    EXPECT_THAT(modelNames({"second", "first"}), ElementsAre("second", "first"));
}

TEST_F(APIBatchesTest, AModelIsFoundByNameByProvidersNameAndById) {
    ModelProfile renamed = first;
    renamed.name = "GPT-4.1";
    renamed.modelIdentifier = "gpt-4.1-2025";
    model().replaceModel(renamed);

    for (const std::string& name : {std::string("gpt-4.1"), std::string(" GPT-4.1\n"),
                                    std::string("GPT-4.1-2025"), first.id.text(), " " + first.id.text()})
        EXPECT_THAT(modelNames({name}), ElementsAre("GPT-4.1")) << name;
}

TEST_F(APIBatchesTest, OneNameNeedsNoList) {
    EXPECT_THAT(modelNames("SECOND"), ElementsAre("second"));
}

TEST_F(APIBatchesTest, AModelThatIsNamedTwiceAnswersTwice) {
    EXPECT_THAT(modelNames({"first", "second", "FIRST"}), ElementsAre("first", "second", "first"));
}

TEST_F(APIBatchesTest, NamesAreTexts) {
    for (const char* models : {"[1]", "[\"first\",null]", "[[\"first\"]]", "7", "true", "{\"first\":true}"})
        expectModelsRefused(Json::Value::parse(models), "models must be a list of names or ids.");
}

TEST_F(APIBatchesTest, AnUnknownNameIsToldTrimmed) {
    expectModelsRefused({"first", " third \n"}, "No model named third.");
    expectModelsRefused("", "No model named .");
    const UUID unknown = UUID::random();
    expectModelsRefused({unknown.text()}, "No model named " + unknown.text() + ".");
}

// A name that looks like an id is one.
TEST_F(APIBatchesTest, AnIdIsNotLookedForAmongTheNames) {
    ModelProfile odd = first;
    odd.name = UUID::random().text();
    model().replaceModel(odd);
    expectModelsRefused({odd.name}, "No model named " + odd.name + ".");
}

TEST_F(APIBatchesTest, OfTwoModelsNamedAlikeOnlyTheIdTells) {
    ModelProfile twin = second;
    twin.name = "FIRST";
    model().replaceModel(twin);

    expectModelsRefused({" first "}, "first matches more than one model. Use its id.");
    EXPECT_THAT(modelNames({second.id.text(), first.id.text()}), ElementsAre("FIRST", "first"));
}

// One model may be called by a name that is the other's at its provider.
TEST_F(APIBatchesTest, NamesAndProvidersNamesAreOneSet) {
    ModelProfile twin = second;
    twin.modelIdentifier = "First";
    model().replaceModel(twin);
    expectModelsRefused({"first"}, "first matches more than one model. Use its id.");
}

TEST_F(APIBatchesTest, AModelThatIsBlockedTellsWhy) {
    model().clearSecret(second.id);
    ModelProfile bare = second;
    bare.provider = ProviderKind::openAI;
    model().replaceModel(bare);
    expectModelsRefused({"second"}, "second cannot run this batch. Add an API key.");
    // Also of the other family: what blocks it comes first.
    expectRefused(with(decision({{{"state", "Rain"}}}), "models", "second"),
                  "second cannot run this batch. Add an API key.");
}

TEST_F(APIBatchesTest, AModelThatIsOffOrOfTheOtherKindIsAnError) {
    ModelProfile off = second;
    off.enabled = false;
    model().replaceModel(off);
    expectModelsRefused({"first", "second"}, "second cannot run this batch. It is not ready for generation.");
    expectModelsRefused({"decider"}, "decider cannot run this batch. It is not ready for generation.");
    expectRefused(with(decision({{{"state", "Rain"}}}), "models", "first"),
                  "first cannot run this batch. It is not ready for decision.");
}

TEST_F(APIBatchesTest, TheFirstProblemIsTheOneTold) {
    expectModelsRefused({"decider", "nobody"},
                        "decider cannot run this batch. It is not ready for generation.");
}

// --- What is written ---

TEST_F(APIBatchesTest, TheReplyIsTheSummaryOfWhatStandsInTheFile) {
    const HTTPResponse response = harness.post(with(generation({"Up?", "Down?"}), "name", " Nightly \n"));

    EXPECT_EQ(response.status, 202);
    const UUID id = BatchHarness::idOf(response);
    const QuorlBatch expected{
        id, "Nightly", RunOrigin::api, QuorlKind::generation, harness.clock.now(), BatchStatus::running};
    EXPECT_EQ(*model().library.findBatch(id), expected);
    EXPECT_THAT(harness.file().loadBatches(), ElementsAre(expected));
    EXPECT_EQ(response, makeReply(202, model().batchSummary(expected)));
    EXPECT_EQ(Json::parse(response.body)->at("items"), 2);
}

TEST_F(APIBatchesTest, RunsStandInTheOrderOfTheItemsAMillisecondApart) {
    const UUID batch =
        harness.postBatch(with(generation({" Up? ", "Down?", "Left?"}), "system", " Be brief. "));

    const auto runs = harness.runsOf(batch);
    ASSERT_EQ(runs.size(), 3u);
    const Date base = harness.clock.now();
    QuorlRun expected;
    expected.kind = QuorlKind::generation;
    expected.systemPrompt = " Be brief. ";
    expected.batchID = batch;
    expected.origin = RunOrigin::api;
    const std::vector<std::string> prompts{"Up?", "Down?", "Left?"};
    for (std::size_t i = 0; i < 3; ++i) {
        expected.id = runs[i]->id;
        expected.prompt = prompts[i];
        expected.createdAt = base + static_cast<double>(i) * std::chrono::duration<double>(0.001);
        EXPECT_EQ(*runs[i], expected);
    }
    auto stored = harness.file().loadRuns(); // newest first
    EXPECT_THAT(stored, ElementsAre(*runs[2], *runs[1], *runs[0]));
}

TEST_F(APIBatchesTest, EveryModelHasAnAnswerThatIsStillToCome) {
    harness.endpoint.answer(sample::everyModel, sample::Fault::neverAnswer());
    const UUID batch = harness.postBatch(with(generation({"Up?", "Down?"}), "models", {"second", "first"}));

    for (std::size_t i = 0; i < 2; ++i) {
        const auto answers = harness.answersOf(batch, i);
        ASSERT_EQ(answers.size(), 2u);
        ModelAnswer expected;
        expected.id = answers[1].id;
        expected.runID = harness.runsOf(batch)[i]->id;
        expected.modelID = first.id;
        expected.modelName = "first";
        expected.provider = first.provider;
        expected.position = 1;
        expected.state = AnswerState::running;
        EXPECT_EQ(answers[1], expected);
        EXPECT_EQ(answers[0].modelID, second.id);
        EXPECT_EQ(answers[0].position, 0);
    }
    EXPECT_EQ(harness.file().loadAnswers().size(), 4u);
}

TEST_F(APIBatchesTest, ABatchWithoutANameIsCalledAPIBatch) {
    for (const Json::Value& name :
         {Json::Value(), Json::Value(7), Json::Value(""), Json::Value(" \n\u00a0")}) {
        const UUID batch = harness.postBatch(with(generation({"Up?"}), "name", name));
        EXPECT_EQ(model().library.findBatch(batch)->name, "API batch") << name;
    }
    EXPECT_EQ(model().library.findBatch(harness.postBatch(generation({"Up?"})))->name, "API batch");
}

TEST_F(APIBatchesTest, TheStateIsTheTextWhereAnItemHasBoth) {
    EXPECT_EQ(onlyPrompt({{"kind", "generation"}, {"items", {{{"state", " Rain\n"}, {"prompt", "Up?"}}}}}),
              "Rain");
    EXPECT_EQ(onlyPrompt({{"kind", "generation"}, {"items", {{{"state", 7}, {"prompt", " Up? "}}}}}), "Up?");
    // An empty one is there all the same.
    const UUID before = **model().selectedBatchID;
    EXPECT_EQ(harness.post({{"kind", "generation"}, {"items", {{{"state", " "}, {"prompt", "Up?"}}}}}).body,
              R"({"error":"Item 1 needs a prompt."})");
    EXPECT_EQ(**model().selectedBatchID, before);
}

TEST_F(APIBatchesTest, AnItemsSystemPromptStandsInForTheBatchs) {
    const UUID batch = harness.postBatch({{"kind", "generation"},
                                          {"system", "of all"},
                                          {"items",
                                           {{{"prompt", "a"}},
                                            {{"prompt", "b"}, {"system", " its own "}},
                                            {{"prompt", "c"}, {"system", ""}},
                                            {{"prompt", "d"}, {"system", 7}}}}});

    std::vector<std::string> systems;
    for (const QuorlRun* run : harness.runsOf(batch))
        systems.push_back(run->systemPrompt);
    EXPECT_THAT(systems, ElementsAre("of all", " its own ", "", "of all"));
}

TEST_F(APIBatchesTest, ADecisionHasTypedQuestionsAndNoSystemPrompt) {
    const UUID batch = harness.postBatch(
        {{"system", "unused"},
         {"items", {{{"state", " Rain "}, {"system", "unused"}, {"questions", yesOrNo()}}}}});

    const QuorlRun& run = *harness.runsOf(batch).at(0);
    EXPECT_EQ(run.kind, QuorlKind::decision);
    EXPECT_EQ(run.prompt, "Rain");
    EXPECT_EQ(run.systemPrompt, "");
    const auto questions = Veritor::restore(run.questionsJSON);
    ASSERT_EQ(questions.size(), 1u);
    EXPECT_EQ(questions[0].name, "wet");
    EXPECT_EQ(questions[0].instructions, "Is it wet?");
}

TEST_F(APIBatchesTest, SnapshotsAreKeptAsTheyStand) {
    DecisionQuestion snapshot = DecisionQuestion::starter();
    snapshot.instructions = "What now?";
    snapshot.type = DecisionQuestionType::noul;
    snapshot.levels = {"kept", "though a noul has none"};

    const HTTPResponse response =
        model().createAPIBatch(decision({{{"state", "Rain"}, {"questions", "not read"}}}).dump(),
                               RunOrigin::app, QuestionSnapshots{{snapshot}});

    const QuorlRun& run = *harness.runsOf(BatchHarness::idOf(response)).at(0);
    EXPECT_THAT(Veritor::restore(run.questionsJSON), ElementsAre(snapshot));
    EXPECT_EQ(run.questionsJSON, Veritor::archive({snapshot}));
}

TEST_F(APIBatchesTest, OnlyScaleInThoseLettersIsTheScale) {
    const auto scoringOf = [&](const Json::Value& scoring) {
        return harness.runsOf(harness.postBatch(with(generation({"Up?"}), "scoring", scoring)))[0]
            ->scoringMode;
    };
    EXPECT_EQ(scoringOf("scale"), ScoringMode::scale);
    for (const Json::Value& scoring :
         {Json::Value("SCALE"), Json::Value(" scale"), Json::Value(1), Json::Value()})
        EXPECT_EQ(scoringOf(scoring), ScoringMode::binary);
    EXPECT_EQ(harness.runsOf(harness.postBatch(generation({"Up?"})))[0]->scoringMode, ScoringMode::binary);
}

TEST_F(APIBatchesTest, CategoriesAreFoundOrMade) {
    const auto categoryOf = [&](const Json::Value& category, const Json::Value& subcategory) {
        const Json::Value body =
            with(with(generation({"Up?"}), "category", category), "subcategory", subcategory);
        return harness.runsOf(harness.postBatch(body))[0]->categoryID;
    };

    EXPECT_EQ(categoryOf({}, {}), std::nullopt);
    EXPECT_EQ(categoryOf(" ", " \n"), std::nullopt);
    const auto root = categoryOf(" Support ", " ");
    const auto child = categoryOf("SUPPORT", "Refunds\n");
    EXPECT_EQ(categoryOf("support", "refunds"), child);
    ASSERT_EQ(model().library.categories().size(), 2u);
    EXPECT_EQ(model().library.findCategory(*root)->name, "Support");
    EXPECT_EQ(model().library.findCategory(*child)->name, "Refunds");
    EXPECT_EQ(model().library.findCategory(*child)->parentID, root);
    EXPECT_EQ(harness.file().loadCategories(), model().library.categories());
}

TEST_F(APIBatchesTest, UnknownKeysAreIgnored) {
    EXPECT_EQ(
        onlyPrompt({{"kind", "generation"}, {"colour", "red"}, {"items", {{{"prompt", "Up?"}, {"x", {}}}}}}),
        "Up?");
}

TEST_F(APIBatchesTest, ALargeTextIsTakenWhole) {
    const std::string text(8 << 20, 'x');
    EXPECT_EQ(onlyPrompt(generation({text})), text);
    EXPECT_EQ(harness.file().loadRuns()[0].prompt, text);
}

// --- What is shown ---

TEST_F(APIBatchesTest, ABatchOfAClientBringsTheBatchesScreenToTheFront) {
    const UUID otherRun = UUID::random();
    const UUID otherBatch = UUID::random();
    model().activeRunID = otherRun;
    model().activeBatchID = otherBatch;

    const UUID batch = harness.postBatch(generation({"Up?"}));

    EXPECT_EQ(*model().destination, Destination(Screen::batches));
    EXPECT_EQ(**model().selectedBatchID, batch);
    EXPECT_EQ(**model().activeRunID, otherRun);
    EXPECT_EQ(**model().activeBatchID, otherBatch);
}

TEST_F(APIBatchesTest, ABatchOfTheProgramIsShownOnTheCompareScreenAtItsFirstRun) {
    model().destination = Screen::models;

    const UUID batch = BatchHarness::idOf(
        model().createAPIBatch(generation({"Up?", "Down?"}).dump(), RunOrigin::app, std::nullopt));

    EXPECT_EQ(model().library.findBatch(batch)->source, RunOrigin::app);
    EXPECT_EQ(harness.runsOf(batch)[0]->origin, RunOrigin::app);
    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_EQ(**model().selectedBatchID, batch);
    EXPECT_EQ(**model().activeBatchID, batch);
    EXPECT_EQ(**model().activeRunID, harness.runsOf(batch)[0]->id);
}

TEST_F(APIBatchesTest, TheKeychainIsAskedOnceAModelAndProcess) {
    const int before = harness.keychain.copies;
    harness.postBatch(generation({"Up?", "Down?"}));
    EXPECT_EQ(harness.keychain.copies, before);
}

} // namespace
