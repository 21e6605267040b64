#pragma once

#include "base/UUID.h"
#include "store/ModelSecret.h"

#include <mutex>
#include <string>
#include <unordered_map>

namespace quorl {

class Keychain;

// The credentials of the models: one keychain item per model, under the model's id, and a copy in memory, so that the keychain
// is asked once per model and process. Thread: any. Failures: none is reported; a keychain that is locked, refuses or holds
// something else looks like a model without credentials, and stays so until the process ends.
class SecretStore {
public:
    /// `keychain` is borrowed and must outlive the store.
    SecretStore(Keychain& keychain, std::string service);

    [[nodiscard]] ModelSecret load(const UUID& modelID);
    void save(const UUID& modelID, const ModelSecret& secret);
    void clear(const UUID& modelID);

private:
    Keychain& keychain;
    const std::string service;
    std::mutex lock;
    std::unordered_map<UUID, ModelSecret> memory; // guarded by `lock`
};

} // namespace quorl
