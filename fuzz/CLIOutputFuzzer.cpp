#include "Require.h"
#include "transports/CLIOutputParser.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using quorl::fuzzing::require;
namespace CLIOutputParser = quorl::CLIOutputParser;

// Standard output and, behind the first zero byte, standard error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const std::size_t end = input.find('\0');
    const std::string_view output = input.substr(0, end);
    const std::string_view error = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);

    for (const auto parse : {CLIOutputParser::parseClaude, CLIOutputParser::parseCodex}) {
        const quorl::ParsedCLI parsed = parse(output, error);
        require(parsed.error || !parsed.text.empty(), "there is an answer or an error");
    }
    require(CLIOutputParser::stripANSI(output).size() <= output.size(), "stripping adds nothing");
    return 0;
}
