#include "Require.h"
#include "base/Json.h"

#include <cstddef>
#include <cstdint>

using quorl::fuzzing::require;
namespace Json = quorl::Json;

// What can be read can be written, in either layout, and read again as the same value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto value = Json::parse({reinterpret_cast<const char*>(bytes), size});
    if (!value)
        return 0;
    for (const auto layout : {Json::Layout::compact, Json::Layout::pretty}) {
        for (const auto slash : {Json::Slash::bare, Json::Slash::escaped}) {
            const auto text = Json::write(*value, layout, slash);
            require(text.has_value(), "a value that was read can be written");
            require(Json::parse(*text) == value, "it is read again as the same");
        }
    }
    static_cast<void>(Json::wholeNumber(&*value));
    static_cast<void>(Json::truncatedCount(&*value));
    return 0;
}
