#include "Require.h"
#include "decision/Veritor.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using quorl::fuzzing::require;
namespace Json = quorl::Json;
namespace Veritor = quorl::Veritor;

namespace {

void check(const std::vector<quorl::DecisionQuestion>& questions) {
    require(Veritor::restore(Veritor::archive(questions)) == questions, "the stored form loses nothing");
    const auto wire = Veritor::wireMap(questions);
    require(wire.size() == questions.size(), "every question has a key of its own");
    if (!Veritor::validate("state", questions)) {
        const auto decoded = Veritor::decodeWireQuestions(wire);
        require(decoded && decoded->size() == questions.size(), "valid questions are sent readably");
    }
}

} // namespace

// The same bytes as a stored form and as a wire form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    check(Veritor::restore(text));
    static_cast<void>(Veritor::restoreBulk(text));
    if (const auto value = Json::parse(text)) {
        if (const auto questions = Veritor::decodeWireQuestions(*value))
            check(*questions);
    }
    return 0;
}
