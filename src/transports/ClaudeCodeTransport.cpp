#include "transports/ClaudeCodeTransport.h"

#include "base/Text.h"
#include "transports/CLIDecision.h"
#include "transports/CLIEnvironment.h"
#include "transports/ClaudeCommand.h"
#include "transports/ExecutableResolver.h"
#include "transports/HomeDirectory.h"
#include "transports/ProcessRunner.h"

#include <string>

namespace quorl::ClaudeCodeTransport {

RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch) {
    const auto executable = ExecutableResolver::find(ProviderKind::claudeCode, request.model.executablePath);
    if (!executable)
        return RawDecision::failed("Couldn't find the Claude Code CLI.");
    const std::string model(Text::trimmed(request.model.modelIdentifier));
    const auto result =
        ProcessRunner::run({.executable = *executable,
                            .arguments = ClaudeCommand::arguments(model, request.systemPrompt),
                            .standardInput = request.prompt,
                            .directory = scratch,
                            .workingDirectory = homeDirectory(),
                            .environment = CLIEnvironment::claude(*executable),
                            .timeout = std::chrono::seconds(180)});
    return decisionOf(result, {"Claude Code", CLIOutputParser::parseClaude});
}

} // namespace quorl::ClaudeCodeTransport
