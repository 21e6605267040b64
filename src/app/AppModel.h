#pragma once

#include "app/Library.h"
#include "app/Observed.h"
#include "base/Date.h"
#include "base/JsonForward.h"
#include "decision/DecisionQuestion.h"
#include "domain/Records.h"
#include "platform/Platform.h"
#include "store/SecretStore.h"
#include "store/StoreError.h"
#include "transports/Decision.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

namespace quorl {

class DecisionRouter;
class LocalAPIServer;
class QuorlStore;
class Workers;
struct BatchItem;
struct BatchOrder;
struct HTTPResponse;
struct ScoreInput;
struct ScoreRow;

// The screens that need no more than their name.
enum class Screen { draft, history, scores, dataset, models, categories, batches };

// The screen of one run; of a run that no longer exists, the Compare screen.
struct RunScreen {
    UUID runID;
    bool operator==(const RunScreen&) const = default;
};

using Destination = std::variant<Screen, RunScreen>;

// What the user has asked to delete and not yet confirmed.
struct PendingDelete {
    enum class Kind { model, category, run, example, batch };

    Kind kind;
    UUID target;

    /// Tells one confirmation from another: "model-", "category-" …, and the identifier's text.
    [[nodiscard]] std::string id() const;

    bool operator==(const PendingDelete&) const = default;
};

// A toast.
struct QuorlFeedback {
    UUID id; // fresh for every announcement
    std::string title;
    std::string detail;
    std::string symbol; // the name of a symbol image
    bool isMilestone = false;

    bool operator==(const QuorlFeedback&) const = default;
};

// Whether a model can be asked.
struct Readiness {
    enum class State { ready, disabled, blocked };

    State state = State::ready;
    std::string message; // of `blocked`: what the user can do

    bool operator==(const Readiness&) const = default;
};

// All the state of the running program and every action on it. Made once, at the start; making it runs the
// whole launch: opens the library, keeps its catalogue up to date, loads it, restores the draft, ends what
// the last quit cut off. Thread: main. Failures: a failure of the library shows in `alertMessage`, one of a
// model in its answer's `errorMessage`.
class AppModel {
    Observers observers; // first, since every field below reports to it

public:
    /// What is passed is borrowed and must outlive the model; `threads` must end before `decisionRouter`
    /// does.
    AppModel(Platform& services, const DecisionRouter& decisionRouter, Workers& threads);
    ~AppModel(); // outcomes that arrive later are dropped

    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    [[nodiscard]] Observers::Subscription observe(Observers::Observer observer);

    // --- State ---

    Library library{observers};

    Observed<Destination> destination{observers, AppField::destination, Screen::draft};
    Observed<std::optional<UUID>> activeRunID{observers, AppField::activeRunID};
    Observed<std::optional<UUID>> activeBatchID{observers, AppField::activeBatchID};
    Observed<bool> draftIsBulk{observers, AppField::draftIsBulk};
    Observed<std::vector<BulkQuestion>> draftBulkQuestions{observers, AppField::draftBulkQuestions, {{}}};
    Observed<DecisionQuestion> draftBulkTemplate{observers, AppField::draftBulkTemplate,
                                                 DecisionQuestion::starter()};
    Observed<bool> bulkTemplateInitialized{observers, AppField::bulkTemplateInitialized};
    Observed<QuorlKind> draftKind{observers, AppField::draftKind, QuorlKind::decision};
    Observed<std::string> draftPrompt{observers, AppField::draftPrompt};
    Observed<std::string> draftSystem{observers, AppField::draftSystem,
                                      std::string(defaultSystemPrompt(QuorlKind::decision))};
    Observed<std::string> draftCategoryText{observers, AppField::draftCategoryText};
    Observed<std::string> draftSubcategoryText{observers, AppField::draftSubcategoryText};
    Observed<std::vector<DecisionQuestion>> draftQuestions{
        observers, AppField::draftQuestions, {DecisionQuestion::starter()}};
    Observed<std::optional<UUID>> draftCategoryID{observers, AppField::draftCategoryID};
    Observed<ScoringMode> draftScoring{observers, AppField::draftScoring, ScoringMode::binary};
    Observed<std::set<UUID>> draftModelIDs{observers, AppField::draftModelIDs};
    Observed<std::optional<bool>> claudeLoggedIn{observers, AppField::claudeLoggedIn};
    Observed<std::optional<std::string>> claudeLoginStatus{observers, AppField::claudeLoginStatus};
    // Each change asks for the caret in the question field.
    Observed<std::int64_t> focusToken{observers, AppField::focusToken};
    Observed<std::optional<UUID>> selectedModelID{observers, AppField::selectedModelID};
    Observed<std::optional<UUID>> selectedCategoryID{observers, AppField::selectedCategoryID};
    Observed<std::optional<std::string>> alertMessage{observers, AppField::alertMessage};
    Observed<std::optional<QuorlFeedback>> feedback{observers, AppField::feedback};
    Observed<std::optional<PendingDelete>> pendingDelete{observers, AppField::pendingDelete};
    Observed<std::optional<UUID>> selectedBatchID{observers, AppField::selectedBatchID};
    Observed<std::string> apiBase{observers, AppField::apiBase, "http://127.0.0.1:47821"};
    Observed<std::string> apiToken{observers, AppField::apiToken};
    Observed<std::string> apiMessage{observers, AppField::apiMessage, "Starting"};
    Observed<std::optional<std::string>> launchWarning{observers, AppField::launchWarning};
    ObservedMap<std::string> testStatus{observers, AppField::testStatus}; // by model
    ObservedMap<bool> secretFlags{observers, AppField::secretFlags};      // by model: its credentials suffice
    Observed<Date> lastAsk{observers, AppField::lastAsk, distantPast};

    // --- Reading ---

    /// Whether a model can be asked now. May look for files.
    [[nodiscard]] Readiness readiness(const ModelProfile& model) const;

    /// The models that a press of the run button would ask: chosen, ready, of the family of the draft's kind,
    /// in list order.
    [[nodiscard]] std::vector<ModelProfile> selectedModels() const;

    /// Categories without a parent, and the direct children of one, by `sortIndex`; ties in the order of the
    /// library.
    [[nodiscard]] std::vector<Category> roots() const;
    [[nodiscard]] std::vector<Category> children(const UUID& of) const;

    // --- The draft (Draft.cpp) ---

    /// The system instructions that a draft of a kind starts with.
    [[nodiscard]] static std::string_view defaultSystemPrompt(QuorlKind kind);

    void persistDraft();
    void setKind(QuorlKind kind);
    void setBulk(bool on);
    void newComparison();
    void toggleDraftModel(const UUID& id);

    // --- Asking (Ask.cpp) ---

    void ask();
    void retry(const UUID& answerID);

    // --- Lists of questions, and past comparisons (Bulk.cpp, Reopening.cpp) ---

    /// Puts the draft's list of questions to the chosen decision models as one batch.
    void askBulk();
    /// The next run of the batch on show; behind the last one, and of a single comparison, an empty screen.
    void nextQuestion();
    /// Shows a past run with the draft as it was asked; a decision batch comes back as its list.
    void openComparison(const QuorlRun& run);
    /// A single-question draft like that run, with no answers on show.
    void variation(const QuorlRun& from);

    // --- What programs ask for (APIBatches.cpp, Payloads.cpp, Marking.cpp) ---

    // Each runs to its end before the next, so that every client finds a whole library.

    /// Makes a batch of the JSON `body`, with a run for each item and an answer for each item and model in
    /// one transaction, and queues the work. 202 with the summary, or an error after which nothing is
    /// changed. With `questionSnapshots`, one list per item, the items' own questions are not read.
    [[nodiscard]] HTTPResponse createAPIBatch(std::string_view body, RunOrigin source,
                                              const std::optional<QuestionSnapshots>& questionSnapshots);
    /// Judges the answer as the JSON `body` says, key by key; what was judged before an error stays.
    [[nodiscard]] HTTPResponse markAPIAnswer(const UUID& id, std::string_view body);
    /// Keeps the answer in the dataset, unless it is there already.
    [[nodiscard]] HTTPResponse saveAPIAnswer(const UUID& id);

    /// The shapes that clients see; docs/api.md tells their keys.
    [[nodiscard]] Json::Value apiModels() const;
    [[nodiscard]] Json::Value batchSummary(const QuorlBatch& batch) const;
    [[nodiscard]] std::optional<Json::Value> batchPayload(const UUID& id) const; // nothing for an unknown id
    [[nodiscard]] static Json::Value answerJSON(const ModelAnswer& answer, QuorlKind kind);

    /// Starts to listen for programs, once; `server` is borrowed and must outlive the model. A failure shows
    /// in `apiMessage`. (api/StartAPI.cpp)
    void startAPI(LocalAPIServer& server);
    void startAPI(LocalAPIServer& server, std::uint16_t port); // in place of the program's own port

    // --- Models, credentials, connection test (Models.cpp) ---

    void addModel(ProviderKind kind);
    void replaceModel(const ModelProfile& profile);
    void saveSecret(const UUID& modelID, const ModelSecret& secret);
    /// Puts the fields of `pasted` that are not empty, trimmed, in place of the saved ones. If all are empty,
    /// asks for one in `alertMessage` and changes nothing.
    void mergeSecret(const UUID& modelID, const ModelSecret& pasted);
    void clearSecret(const UUID& modelID);
    /// Whether the saved credentials are enough for the model as it is given, saved or not.
    [[nodiscard]] bool hasUsableSecret(const ModelProfile& profile);
    void refreshSecretFlags();
    void test(const ModelProfile& profile);

    // --- Claude Code's login (ClaudeLogin.cpp) ---

    /// Runs the tool's own login and then asks it how that stands; both end in `claudeLoginStatus`.
    void loginClaudeCode();

    // --- Categories (Categories.cpp) ---

    void addCategory(std::string_view name, const std::optional<UUID>& parent);
    void renameCategory(const UUID& id, std::string_view name);

    // --- Deleting (Deletion.cpp) ---

    void requestDelete(const PendingDelete& pending);
    void confirmDelete();
    void removeExample(UUID id);

    // --- Judging (Judging.cpp) ---

    // The three judgements are independent but for the rules told here. Nothing happens if there is no such
    // answer. A judgement also goes into the answer's example; none ever makes one.

    /// Whether the answer is good. Only a yes leaves the run's preference as it was.
    void setAccepted(UUID answerID, std::optional<bool> value);
    /// `value`: 1 to 10, which the caller sees to.
    void setRating(UUID answerID, std::optional<std::int64_t> value);
    /// Makes the answer the preferred one of its run and refuses the others; of the preferred one, takes
    /// preference and verdicts of the whole run back. Ratings stay.
    void markCorrect(UUID answerID);

    // --- Dataset (Dataset.cpp) ---

    /// Makes an example of the answer, or rewrites the one it has; all of it in memory and file, or nothing.
    /// Without `completion` the answer's text as it stands, else that text trimmed; without
    /// `datasetAccepted` the answer's own verdict; without `feedbackTitle` no toast. Nothing happens unless
    /// the answer is done and there is text to keep.
    void saveToDataset(UUID answerID, const std::optional<std::string>& completion,
                       std::optional<bool> datasetAccepted, const std::optional<std::string>& feedbackTitle);
    /// The answer stays, and so do its judgements.
    void removeFromDataset(UUID answerID);

    // --- Scores and exports (ScoreInputs.cpp, Exports.cpp) ---

    /// Every answer of the library: newest run first, each run's by `position`.
    [[nodiscard]] std::vector<ScoreInput> scoreInputs() const;

    /// Asks where the file goes and writes it once that is known. `rows` is read at once, `saver` borrowed
    /// for the call. Cancelling is no failure.
    void exportScores(std::span<const ScoreRow> rows, FileSaver& saver);
    void exportDataset(FileSaver& saver);

    // --- Toasts (Feedback.cpp) ---

    void announce(std::string title, std::string detail, std::string symbol, bool isMilestone);

private:
    struct Job {
        ModelProfile model;
        UUID answerID;
    };

    // One item of a batch, waiting to be asked. The credentials are those of the moment it was made.
    struct APIWork {
        std::string prompt;
        std::string system; // empty for a decision
        QuorlKind kind = QuorlKind::decision;
        std::vector<DecisionQuestion> questions; // none for a generation
        std::vector<Job> jobs;                   // by `position`
        std::unordered_map<UUID, ModelSecret> secretsByModel;
    };

    // The models that a client named, or what is wrong with the names and then no model.
    struct ResolvedModels {
        std::vector<ModelProfile> models;
        std::optional<std::string> problem;
    };

    // What a piece of background work leaves to be done with the model.
    using OnMain = std::function<void(AppModel&)>;

    // Does `work` on a worker thread and what it answers on the main thread, unless the model is gone by
    // then.
    void inBackground(std::function<OnMain()> work);

    // Launch.cpp
    std::unique_ptr<QuorlStore> openStore();
    void bootstrap();
    void seedIfEmpty();
    void ensureDecisionModels();
    void retireSeedCategories();
    void attachCLIPaths();
    void refreshClaudeNotes();
    void refreshNuvelNotes();
    void saveQuietly(const ModelProfile& profile);
    void recoverInterrupted();
    void selectDefaultModelsIfNeeded();
    void reload();

    // api/StartAPI.cpp
    void loadAPIToken();

    // ClaudeLogin.cpp
    void refreshClaudeLogin(const OnMain& afterwards);
    [[nodiscard]] std::optional<std::string> findClaudeTool() const;

    // Draft.cpp
    void loadDraft();
    std::optional<UUID> resolveCategoryID();
    void fillCategoryFields(const std::optional<UUID>& from);

    // Ask.cpp
    [[nodiscard]] bool isSecondPress() const; // of the run button, so soon that both are one
    bool draftIsComplete();
    [[nodiscard]] static ModelAnswer makeAnswer(const QuorlRun& run, const ModelProfile& model,
                                                std::int64_t position);
    std::vector<Job> insertAnswers(const QuorlRun& run, const std::vector<ModelProfile>& models);
    using Finished = std::function<void(AppModel&, const DecisionOutcome&)>;
    // Asks on a worker thread and hands the outcome to `finished` on the main thread, unless the model is
    // gone by then.
    void start(DecisionRequest request, ModelSecret secret, Finished finished);
    void finish(const UUID& answerID, const DecisionOutcome& outcome);

    // APIModels.cpp; `named` is the value of the key "models", null where it is absent
    [[nodiscard]] ResolvedModels resolveAPIModels(const Json::Value* named, QuorlKind kind) const;
    [[nodiscard]] std::vector<ModelProfile> readyModels(QuorlKind kind) const;
    [[nodiscard]] std::optional<std::string> whyNotInBatch(const ModelProfile& model, QuorlKind kind) const;

    // APIBatches.cpp
    std::vector<APIWork> insertBatch(const QuorlBatch& batch, const BatchOrder& order,
                                     std::vector<BatchItem> items, const std::vector<ModelProfile>& models);
    void showNewBatch(const QuorlBatch& batch);
    std::optional<UUID> categoryID(std::string_view named, std::string_view subcategory);

    // WorkQueue.cpp: starts the next item of all batches, unless one is under way
    void pumpAPI();
    [[nodiscard]] bool apiBusy() const { return apiAwaited > 0; }

    // Batches.cpp
    void refreshBatchStatus(const UUID& batchID);
    void settleBatches();

    // Categories.cpp
    UUID findOrCreateCategory(std::string_view name, const std::optional<UUID>& parentID);
    [[nodiscard]] const Category* findSibling(std::string_view name,
                                              const std::optional<UUID>& parentID) const;
    [[nodiscard]] Category makeCategory(std::string_view name, const std::optional<UUID>& parentID) const;

    // Deletion.cpp
    void deleteModel(const UUID& id);
    void deleteCategory(const UUID& id);
    void deleteRun(const UUID& id);
    void deleteBatch(const UUID& id);

    // Judging.cpp
    void syncDataset(const ModelAnswer& answer);

    // Dataset.cpp
    void updateExample(const ModelAnswer& answer, const DatasetExample& example,
                       const std::optional<std::string>& feedbackTitle);
    void createExample(ModelAnswer answer, DatasetExample example,
                       const std::optional<std::string>& feedbackTitle);
    void announceDatasetSave(const std::string& title);
    // Does the writes of `work` in one transaction; whatever fails, none of them stays, and the error goes
    // on.
    void writeTogether(const std::function<void()>& work);

    // Exports.cpp
    void saveFile(std::string bytes, const std::string& name, const FileType& type, FileSaver& saver);

    // Runs a write to the library; its failure becomes the alert.
    template <class Write>
    void alertOnFailure(Write write) {
        try {
            write();
        } catch (const StoreError& error) {
            alertMessage = error.message();
        }
    }

    Platform& platform;
    const DecisionRouter& router;
    Workers& workers;
    const std::filesystem::path directory; // the library's folder
    std::unique_ptr<QuorlStore> store;
    SecretStore secrets;
    std::deque<APIWork> apiQueue;           // first in, first out; without the item under way
    std::size_t apiAwaited = 0;             // answers of the item under way that are still to come
    const std::shared_ptr<AppModel*> alive; // watched by work that may outlive the model
};

} // namespace quorl

template <>
struct std::hash<quorl::RunScreen> {
    std::size_t operator()(const quorl::RunScreen& screen) const noexcept { return screen.runID.hash(); }
};
