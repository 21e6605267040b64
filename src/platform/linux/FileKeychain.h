#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <mutex>

namespace quorl {

// One file per item, FOLDER/SERVICE/secrets/ACCOUNT.json, readable by the user alone: for sessions without a
// Secret Service. Not encrypted; that is left to the user's disk. A service or account that is no plain file
// name has no items. Adding does not replace an item that is there. Thread: any.
class FileKeychain : public Keychain {
public:
    explicit FileKeychain(std::filesystem::path folder);

    [[nodiscard]] std::optional<std::string> copy(const std::string& service,
                                                  const std::string& account) override;
    void add(const std::string& service, const std::string& account, const std::string& bytes) override;
    void remove(const std::string& service, const std::string& account) override;

private:
    const std::filesystem::path folder;
    std::mutex lock; // one change at a time, so that of two additions one sees the other
};

} // namespace quorl
