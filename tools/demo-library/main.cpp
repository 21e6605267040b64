// quorl-demo-library: prepares a throw-away library whose models are those of the sample endpoint, so that
// the program can be tried without a key. Where the library, the settings and the keys go is told by the XDG
// variables, as it is to the program.

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
    "Fills the library below $XDG_DATA_HOME and the settings below $XDG_CONFIG_HOME with four sample\n"
    "models that are reached at URL. Both have to name a folder: it is not meant for a library of\n"
    "one's own.\n";

constexpr auto question =
    "Our small team answers the same customer questions again and again.\n"
    "Which should we build first: a searchable help page or a set of saved replies, and why?";

struct DemoModel {
    std::string_view id;
    std::string_view name;
    std::string_view modelIdentifier;
    double inputPricePerMillion;
    double outputPricePerMillion;
    std::string_view notes;
};

constexpr std::array demoModels{
    DemoModel{"DE300000-0000-4000-8000-000000000001", "Sample · Brief", "sample-brief", 0.15, 0.60,
              "A sample without a model behind it: one sentence, quick and cheap."},
    DemoModel{"DE300000-0000-4000-8000-000000000002", "Sample · Thorough", "sample-thorough", 2.50, 10.00,
              "A sample without a model behind it: the question taken apart, slow and dear."},
    DemoModel{"DE300000-0000-4000-8000-000000000003", "Sample · Step by step", "sample-steps", 1.10, 4.40,
              "A sample without a model behind it: a numbered plan."},
    DemoModel{"DE300000-0000-4000-8000-000000000004", "Sample · Skeptic", "sample-skeptic", 0, 0,
              "A sample without a model behind it: questions back. Its price is not known, so its cost is "
              "not either."},
};

ModelProfile profileOf(const DemoModel& demo, const std::string& endpoint, std::int64_t sortIndex) {
    ModelProfile model;
    model.id = UUID::parse(demo.id).value();
    model.name = demo.name;
    model.provider = ProviderKind::openAICompatible;
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
    for (const auto& demo : demoModels)
        models.push_back(profileOf(demo, endpoint, static_cast<std::int64_t>(models.size())));
    return models;
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

void fillDefaults(const std::filesystem::path& file, const std::vector<ModelProfile>& models) {
    std::vector<std::string> ids;
    for (const auto& model : models)
        ids.push_back(model.id.text());

    QSettingsDefaults defaults(file);
    defaults.setString("draft.kind", std::string(rawString(QuorlKind::generation)));
    defaults.setString("draft.prompt", question);
    defaults.setString("draft.system", "Answer directly. Do not use tools.");
    defaults.setStrings("draft.models", ids);
    defaults.setBoolean("seed.decisions.v1", true); // the library stays these four models
}

// Without an absolute path the program's own rules lead to the user's home, and the demo's models would land
// among the user's own.
bool namesFolder(const char* variable) {
    const char* const value = std::getenv(variable);
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
    fillDefaults(defaultsFile(directories), models);
    return EX_OK;
}
