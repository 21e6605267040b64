#include "library/LargeLibrary.h"

#include "store/QuorlStore.h"
#include "store/Seed.h"

#include <unistd.h>

#include <random>
#include <stdexcept>
#include <string_view>

namespace quorl::bench {

namespace {

// Part of the file's name: another layout of the content must not meet an older file.
constexpr int contentVersion = 1;

constexpr std::size_t runsPerBatch = 200;

constexpr std::string_view prose = "The short answer is yes, with one condition: the refund has to be asked "
                                   "for within thirty days of the delivery, and "
                                   "the parcel has to come back unopened. Since the order left the warehouse "
                                   "on the third and was signed for on the "
                                   "fifth, the customer is well inside that window. I would approve the "
                                   "request, send the return label, and tell them "
                                   "that the amount appears on their statement after five to ten working "
                                   "days. If the seal turns out to be broken, the "
                                   "policy allows a partial refund of up to seventy percent; in that case a "
                                   "colleague from the second line decides. "
                                   "Nothing in the message suggests fraud, and the account has been in good "
                                   "standing since it was opened in the spring. ";

// The same library every time: identifiers and choices come from a fixed seed.
class Writer {
public:
    explicit Writer(QuorlStore& written) : store(written) {}

    void write(std::size_t runs) {
        for (const ModelProfile& model : Seed::models())
            store.saveModel(model);
        for (int i = 0; i < 20; ++i)
            categories.push_back(writeCategory(i));
        for (std::size_t i = 0; i < runs; ++i)
            writeRun(i, runs);
    }

private:
    UUID nextID() {
        char text[37];
        const std::uint64_t high = random();
        const std::uint64_t low = random();
        std::snprintf(text, sizeof text, "%08X-%04X-4%03X-8%03X-%012llX", static_cast<unsigned>(high >> 32),
                      static_cast<unsigned>(high >> 16 & 0xFFFF), static_cast<unsigned>(high & 0xFFF),
                      static_cast<unsigned>(low >> 52),
                      static_cast<unsigned long long>(low & 0xFFFFFFFFFFFF));
        return *UUID::parse(text);
    }

    // Begins somewhere in the prose, so that no two neighbours are the same.
    std::string text(std::size_t length) {
        const std::size_t start = random() % prose.size();
        std::string result(prose.substr(start, length));
        while (result.size() < length)
            result += prose.substr(0, length - result.size());
        return result;
    }

    UUID writeCategory(int number) {
        Category category;
        category.id = nextID();
        category.name = "Category " + std::to_string(number);
        category.sortIndex = number;
        store.saveCategory(category);
        return category.id;
    }

    std::optional<UUID> batchOf(std::size_t number, std::size_t runs, Date createdAt) {
        const std::size_t firstInBatch = runs - runs / 10;
        if (number < firstInBatch)
            return std::nullopt;
        if ((number - firstInBatch) % runsPerBatch == 0) {
            QuorlBatch next;
            next.id = nextID();
            next.name = "Nightly " + std::to_string(number);
            next.kind = QuorlKind::generation;
            next.createdAt = createdAt;
            next.status = BatchStatus::done;
            store.saveBatch(next);
            batch = next.id;
        }
        return batch;
    }

    void writeRun(std::size_t number, std::size_t runs) {
        QuorlRun run;
        run.id = nextID();
        run.kind = QuorlKind::generation;
        run.prompt = text(80 + random() % 200);
        run.systemPrompt = "Answer directly. Put the decision first, then a short reason. Do not use tools.";
        run.categoryID = categories[random() % categories.size()];
        run.scoringMode = number % 2 == 0 ? ScoringMode::binary : ScoringMode::scale;
        run.createdAt = dateFromSeconds(1'700'000'000 + static_cast<double>(number) * 61.25);
        run.batchID = batchOf(number, runs, run.createdAt);
        run.origin = run.batchID ? RunOrigin::api : RunOrigin::app;
        store.insertRun(run);
        for (std::size_t position = 0; position < answersPerRun; ++position)
            writeAnswer(run, position);
    }

    void writeAnswer(const QuorlRun& run, std::size_t position) {
        static const std::vector<ModelProfile> models = Seed::models();
        const ModelProfile& model = models[4 + position];
        ModelAnswer answer;
        answer.id = nextID();
        answer.runID = run.id;
        answer.modelID = model.id;
        answer.modelName = model.name;
        answer.provider = model.provider;
        answer.position = static_cast<std::int64_t>(position);
        answer.state = random() % 50 == 0 ? AnswerState::failed : AnswerState::done;
        answer.text = text(300 + random() % 600);
        answer.latencyMS = static_cast<std::int64_t>(300 + random() % 9000);
        answer.inputTokens = static_cast<std::int64_t>(40 + random() % 100);
        answer.outputTokens = static_cast<std::int64_t>(answer.text.size() / 4);
        answer.costUSD = static_cast<double>(*answer.outputTokens) * 8e-6;
        if (answer.state == AnswerState::failed)
            answer.errorMessage = "HTTP 429: the model is overloaded.";
        if (random() % 2 == 0)
            answer.accepted = random() % 3 != 0;
        if (run.scoringMode == ScoringMode::scale)
            answer.rating = static_cast<std::int64_t>(1 + random() % 10);
        store.insertAnswer(answer);
    }

    QuorlStore& store;
    std::mt19937_64 random{20'240'229};
    std::vector<UUID> categories;
    UUID batch;
};

} // namespace

std::filesystem::path largeLibrary(std::size_t runs) {
    const auto folder = std::filesystem::temp_directory_path();
    const auto name =
        "quorl-library-" + std::to_string(runs) + "-" + std::to_string(contentVersion) + ".sqlite";
    if (std::filesystem::exists(folder / name))
        return folder / name;
    // Under a name of this process until it is whole: another benchmark may be making it too.
    const auto growing = folder / (name + "." + std::to_string(getpid()));
    {
        QuorlStore store(growing.string());
        store.exec("PRAGMA synchronous = OFF");
        store.exec("PRAGMA cache_size = -200000"); // KiB; ids are random, and so are the pages of their index
        store.exec("BEGIN IMMEDIATE");
        Writer(store).write(runs);
        store.exec("COMMIT");
    }
    std::filesystem::rename(growing, folder / name);
    return folder / name;
}

LibraryCopy::LibraryCopy(std::size_t runs) {
    const auto original = largeLibrary(runs);
    file = original;
    file += ".copy-" + std::to_string(getpid());
    std::filesystem::copy_file(original, file, std::filesystem::copy_options::overwrite_existing);
}

LibraryCopy::~LibraryCopy() {
    std::error_code ignored; // left behind at worst in the folder for temporary files
    std::filesystem::remove(file, ignored);
}

} // namespace quorl::bench
