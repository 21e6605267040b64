// quorl-demo-library: prepares a throw-away library whose models are those of the sample endpoint, so that
// the program can be tried without a key. Where the library, the settings and the keys go is told by the XDG
// variables, as it is to the program.

#include "decision/Veritor.h"
#include "platform/linux/FileKeychain.h"
#include "platform/linux/QSettingsDefaults.h"
#include "platform/linux/XDGDirectories.h"
#include "store/ModelSecret.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"

#include <sysexits.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace quorl;
using namespace std::string_view_literals;

constexpr auto usage =
    "usage: quorl-demo-library --endpoint URL\n"
    "\n"
    "Fills the library below $XDG_DATA_HOME and the settings below $XDG_CONFIG_HOME with sample models\n"
    "that are reached at URL, for either kind of comparison. Both have to name a folder: it is not meant\n"
    "for a library of one's own.\n";

constexpr auto question =
    "Our small team answers the same customer questions again and again.\n"
    "Which should we build first: a searchable help page or a set of saved replies, and why?";

enum class Draft { chosen, left };

struct DemoModel {
    std::string_view id;
    ProviderKind provider;
    std::string_view name;
    std::string_view modelIdentifier;
    double inputPricePerMillion;
    double outputPricePerMillion;
    std::string_view notes;
    Draft draft = Draft::chosen;
};

constexpr std::array demoModels{
    DemoModel{"DE300000-0000-4000-8000-000000000001", ProviderKind::openAICompatible, "Sample · Brief",
              "sample-brief", 0.15, 0.60,
              "A sample without a model behind it: one sentence, quick and cheap."},
    DemoModel{"DE300000-0000-4000-8000-000000000002", ProviderKind::openAICompatible, "Sample · Thorough",
              "sample-thorough", 2.50, 10.00,
              "A sample without a model behind it: the question taken apart, slow and dear."},
    DemoModel{"DE300000-0000-4000-8000-000000000003", ProviderKind::openAICompatible, "Sample · Step by step",
              "sample-steps", 1.10, 4.40, "A sample without a model behind it: a numbered plan."},
    DemoModel{"DE300000-0000-4000-8000-000000000004", ProviderKind::openAICompatible, "Sample · Skeptic",
              "sample-skeptic", 0, 0,
              "A sample without a model behind it: questions back. Its price is not known, so its cost is "
              "not either."},
    // Left out of the first question, which four answers side by side show best.
    DemoModel{"DE300000-0000-4000-8000-000000000005", ProviderKind::anthropic, "Sample · Messages",
              "sample-brief", 0.80, 4.00,
              "A sample without a model behind it, reached in Anthropic's format.", Draft::left},
    DemoModel{"DE300000-0000-4000-8000-000000000006", ProviderKind::veritor, "Sample · Literal",
              "sample-literal", 0.10, 0.10,
              "A sample without a model behind it: counts the words that an option has in common with the "
              "state."},
    DemoModel{"DE300000-0000-4000-8000-000000000007", ProviderKind::veritor, "Sample · Stems", "sample-stems",
              0.40, 0.40,
              "A sample without a model behind it: counts words that begin alike, and is less sure."},
};

ModelProfile profileOf(const DemoModel& demo, const std::string& endpoint, std::int64_t sortIndex) {
    ModelProfile model;
    model.id = UUID::parse(demo.id).value();
    model.name = demo.name;
    model.provider = demo.provider;
    model.modelIdentifier = demo.modelIdentifier;
    model.endpoint = endpoint;
    model.inputPricePerMillion = demo.inputPricePerMillion;
    model.outputPricePerMillion = demo.outputPricePerMillion;
    model.maxOutputTokens = 1024;
    model.enabled = true;
    model.notes = demo.notes;
    model.sortIndex = sortIndex;
    return model;
}

std::vector<ModelProfile> modelsAt(const std::string& endpoint) {
    std::vector<ModelProfile> models;
    models.reserve(demoModels.size());
    for (const auto& demo : demoModels)
        models.push_back(profileOf(demo, endpoint, static_cast<std::int64_t>(models.size())));
    return models;
}

// What a switch to decisions asks about the same text.
std::vector<DecisionQuestion> demoQuestions() {
    DecisionQuestion choice;
    choice.id = UUID::parse("DE300000-0000-4000-8000-000000000011").value();
    choice.name = "First step";
    choice.type = DecisionQuestionType::choice;
    choice.instructions = "What should the team build first?";
    choice.options = {
        {UUID::parse("DE300000-0000-4000-8000-000000000012").value(), "Help page",
         "A searchable page where customers find the answer themselves."},
        {UUID::parse("DE300000-0000-4000-8000-000000000013").value(), "Saved replies",
         "A set of texts that the team sends with two clicks."},
        {UUID::parse("DE300000-0000-4000-8000-000000000014").value(), "Neither", "Nothing has to be built."},
    };
    choice.levels = {"", ""};

    DecisionQuestion noul;
    noul.id = UUID::parse("DE300000-0000-4000-8000-000000000015").value();
    noul.type = DecisionQuestionType::noul;
    noul.instructions = "Do the same questions come up again and again?";
    noul.options = {{UUID::parse("DE300000-0000-4000-8000-000000000016").value(), "", ""},
                    {UUID::parse("DE300000-0000-4000-8000-000000000017").value(), "", ""}};
    noul.levels = {"", ""};
    noul.yesMeans = "Customers ask what others asked before.";
    noul.noMeans = "Every question is a new one.";
    return {choice, noul};
}

void fillLibrary(const std::filesystem::path& applicationSupport, const std::vector<ModelProfile>& models) {
    const auto folder = SupportPaths::directory(applicationSupport);
    QuorlStore store((folder / "quorl.sqlite").string());
    for (const auto& model : models)
        store.saveModel(model);
}

// The endpoint takes any key, but the program asks none without one.
bool fillKeychain(const std::filesystem::path& folder, const std::vector<ModelProfile>& models) {
    FileKeychain keychain(folder);
    ModelSecret secret;
    secret.apiKey = "sample-key";
    const auto key = secret.json().value();
    for (const auto& model : models) {
        keychain.remove(applicationFolder, model.id.text());
        keychain.add(applicationFolder, model.id.text(), key);
        if (keychain.copy(applicationFolder, model.id.text()) != key)
            return false;
    }
    return true;
}

void fillDefaults(const std::filesystem::path& file) {
    std::vector<std::string> ids;
    for (const auto& model : demoModels) {
        if (model.draft == Draft::chosen)
            ids.emplace_back(model.id);
    }

    QSettingsDefaults defaults(file);
    defaults.setString("draft.kind", std::string(rawString(QuorlKind::generation)));
    defaults.setString("draft.prompt", question);
    defaults.setString("draft.system", "Answer directly. Do not use tools.");
    defaults.setString("draft.questions", Veritor::archive(demoQuestions()));
    defaults.setStrings("draft.models", ids);
    defaults.setBoolean("seed.decisions.v1", true); // the library stays these models
}

// Without an absolute path the program's own rules lead to the user's home, and the demo's models would land
// among the user's own.
bool namesFolder(const char* variable) {
    const char* const value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): nothing sets variables
    return value && *value == '/';
}

std::optional<std::string> endpointFrom(std::span<char*> words) {
    if (words.size() != 2 || words[0] != "--endpoint"sv || words[1] == ""sv)
        return std::nullopt;
    return words[1];
}

} // namespace

int main(int count, char** words) {
    const auto endpoint = endpointFrom(std::span(words, static_cast<std::size_t>(count)).subspan(1));
    if (!endpoint || !namesFolder("XDG_DATA_HOME") || !namesFolder("XDG_CONFIG_HOME")) {
        std::fputs(usage, stderr);
        return EX_USAGE;
    }

    const auto directories = xdgDirectories();
    const auto models = modelsAt(*endpoint);
    try {
        fillLibrary(applicationSupportDirectory(directories), models);
    } catch (const StoreError& error) {
        std::fprintf(stderr, "quorl-demo-library: %s\n", error.what());
        return EX_CANTCREAT;
    }
    if (!fillKeychain(directories.config, models)) {
        std::fputs("quorl-demo-library: the keys cannot be written.\n", stderr);
        return EX_CANTCREAT;
    }
    fillDefaults(defaultsFile(directories));
    return EX_OK;
}
