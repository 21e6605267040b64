#include "transports/CodexTransport.h"

#include "base/Text.h"
#include "transports/CLIDecision.h"
#include "transports/CodexCommand.h"
#include "transports/ExecutableResolver.h"
#include "transports/ProcessRunner.h"

#include <string>
#include <utility>

namespace quorl::CodexTransport {

namespace {

// The tool has no option for a system prompt.
std::string codexPrompt(const std::string& system, const std::string& question) {
    const std::string instructions(Text::trimmed(system));
    if (instructions.empty())
        return question;
    return "Follow these instructions:\n" + instructions + "\n\nQuestion:\n" + question;
}

} // namespace

RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch) {
    const auto executable = ExecutableResolver::find(ProviderKind::codex, request.model.executablePath);
    if (!executable)
        return RawDecision::failed("Couldn't find the Codex CLI.");
    auto arguments = CodexCommand::arguments(request.model.modelIdentifier);
    std::string prompt = codexPrompt(request.systemPrompt, request.prompt);
    if (prompt.starts_with('-'))
        arguments.emplace_back("--"); // it is no option
    arguments.push_back(std::move(prompt));
    const auto result = ProcessRunner::run({.executable = *executable,
                                            .arguments = std::move(arguments),
                                            .standardInput = std::nullopt,
                                            .directory = scratch,
                                            .workingDirectory = std::nullopt,
                                            .environment = std::nullopt,
                                            .timeout = std::chrono::seconds(180)});
    return decisionOf(result, {"Codex", CLIOutputParser::parseCodex});
}

} // namespace quorl::CodexTransport
