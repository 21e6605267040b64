#include "transports/ClaudeCommand.h"

namespace quorl::ClaudeCommand {

std::vector<std::string> arguments(const std::string& modelIdentifier, const std::string& systemPrompt) {
    std::vector<std::string> words{"--print",
                                   "--output-format",
                                   "json",
                                   "--no-session-persistence",
                                   "--permission-mode",
                                   "dontAsk",
                                   "--disable-slash-commands",
                                   "--tools",
                                   ""}; // no tools
    if (!modelIdentifier.empty())
        words.insert(words.end(), {"--model", modelIdentifier});
    if (!systemPrompt.empty())
        words.insert(words.end(), {"--system-prompt", systemPrompt});
    return words;
}

} // namespace quorl::ClaudeCommand
