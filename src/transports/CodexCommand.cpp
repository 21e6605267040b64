#include "transports/CodexCommand.h"

namespace quorl::CodexCommand {

std::vector<std::string> arguments(const std::string& modelIdentifier) {
    std::vector<std::string> words;
    if (!modelIdentifier.empty())
        words = {"--model", modelIdentifier}; // an option of the tool, not of its subcommand
    words.insert(words.end(),
                 {"exec", "--json", "--skip-git-repo-check", "--ephemeral", "--sandbox", "read-only"});
    return words;
}

} // namespace quorl::CodexCommand
