#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace quorl::test {

// A save dialog that keeps what it was asked and is answered by hand.
class FakeFileSaver : public FileSaver {
public:
    struct Dialog {
        std::string name;
        FileType type;
        Chosen chosen;
    };

    void chooseTarget(const std::string& name, const FileType& type, Chosen chosen) override {
        ++dialogs;
        dialog = Dialog{name, type, std::move(chosen)};
    }

    /// Only while a dialog is open.
    void choose(const std::filesystem::path& target) { answer(target); }
    void cancel() { answer(std::nullopt); }

    int dialogs = 0;              // that were ever opened
    std::optional<Dialog> dialog; // the open one

private:
    void answer(const std::optional<std::filesystem::path>& target) {
        const Chosen chosen = std::exchange(dialog, std::nullopt).value().chosen;
        chosen(target);
    }
};

} // namespace quorl::test
