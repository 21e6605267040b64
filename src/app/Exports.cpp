#include "app/AppModel.h"

#include "app/AtomicFile.h"
#include "app/ExportData.h"

namespace quorl {

void AppModel::exportScores(std::span<const ScoreRow> rows, FileSaver& saver) {
    saveFile(ExportData::scoresCSV(rows), "quorl-scores.csv", {"Comma-separated values", "csv"}, saver);
}

// The whole dataset, whatever a screen shows of it.
void AppModel::exportDataset(FileSaver& saver) {
    std::vector<const DatasetExample*> examples;
    examples.reserve(library.dataset().size());
    for (const DatasetExample& example : library.dataset())
        examples.push_back(&example);
    auto lines = ExportData::fineTuneJSONL(examples);
    if (!lines) {
        alertMessage = lines.message();
        return;
    }
    saveFile(std::move(lines).value(), "quorl-dataset.jsonl", {"JSON Lines", "jsonl"}, saver);
}

// Written here and not by a worker: a program that is quit right after must not leave half of it.
void AppModel::saveFile(std::string bytes, const std::string& name, const FileType& type, FileSaver& saver) {
    saver.chooseTarget(name, type,
                       [bytes = std::move(bytes),
                        model = std::weak_ptr(alive)](const std::optional<std::filesystem::path>& target) {
                           const auto present = model.lock();
                           if (!present || !target)
                               return;
                           if (const auto written = AtomicFile::write(*target, bytes); !written)
                               (*present)->alertMessage = written.message();
                       });
}

} // namespace quorl
