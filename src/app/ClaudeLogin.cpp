#include "transports/ClaudeLogin.h"

#include "app/AppModel.h"
#include "store/SupportPaths.h"
#include "transports/ExecutableResolver.h"
#include "transports/URLOpener.h"

#include <algorithm>

namespace quorl {

namespace {

const ModelProfile* firstClaudeCode(const Library& library) {
    const auto& models = library.models();
    const auto found = std::ranges::find(models, ProviderKind::claudeCode, &ModelProfile::provider);
    return found == models.end() ? nullptr : &*found;
}

} // namespace

std::optional<std::string> AppModel::findClaudeTool() const {
    const ModelProfile* model = firstClaudeCode(library);
    return model ? ExecutableResolver::find(ProviderKind::claudeCode, model->executablePath) : std::nullopt;
}

// Tells `afterwards` in any case; what the tool does not say stays as it was known.
void AppModel::refreshClaudeLogin(const OnMain& afterwards) {
    const std::optional<std::string> tool = findClaudeTool();
    if (!tool) {
        if (afterwards)
            afterwards(*this);
        return;
    }
    inBackground([tool = *tool, scratch = SupportPaths::scratch(directory), afterwards]() -> OnMain {
        return [isLoggedIn = ClaudeLogin::isLoggedIn(tool, scratch), afterwards](AppModel& model) {
            if (isLoggedIn)
                model.claudeLoggedIn = isLoggedIn;
            if (afterwards)
                afterwards(model);
        };
    });
}

void AppModel::loginClaudeCode() {
    if (!firstClaudeCode(library)) {
        claudeLoginStatus = "Add Claude Code in Models first.";
        return;
    }
    const std::optional<std::string> tool = findClaudeTool();
    if (!tool) {
        claudeLoginStatus = "Couldn't find the Claude Code CLI.";
        return;
    }
    claudeLoginStatus = "Opening Claude login…";
    inBackground([tool = *tool]() -> OnMain {
        return [outcome = ClaudeLogin::begin(tool, openURL)](AppModel& model) {
            model.claudeLoginStatus = outcome;
            // Whatever the login said, what the tool knows of itself counts.
            model.refreshClaudeLogin([](AppModel& checked) {
                if (*checked.claudeLoggedIn == true)
                    checked.claudeLoginStatus = "Claude Code is logged in.";
            });
        };
    });
}

} // namespace quorl
