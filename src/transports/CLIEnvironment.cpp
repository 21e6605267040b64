#include "transports/CLIEnvironment.h"

#include "base/Text.h"

namespace quorl::CLIEnvironment {

ProcessRunner::Environment claude(const std::string& executable) {
    auto environment = ProcessRunner::childEnvironment(executable);
    for (const char* name : {"ANTHROPIC_API_KEY", "ANTHROPIC_AUTH_TOKEN"}) {
        const auto variable = environment.find(name);
        if (variable != environment.end() && Text::isBlank(variable->second))
            environment.erase(variable);
    }
    return environment;
}

} // namespace quorl::CLIEnvironment
