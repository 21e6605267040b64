#pragma once

#include "base/ThreadSafety.h"
#include "base/UUID.h"
#include "store/ModelSecret.h"

#include <string>
#include <unordered_map>

namespace quorl {

class Keychain;

// The credentials of the models: one keychain item per model, under the model's id, and a copy in memory, so
// that the keychain is asked once per model and process. Thread: any. Failures: none is reported; a keychain
// that is locked, refuses or holds something else looks like a model without credentials, and stays so until
// the process ends.
class SecretStore {
public:
    /// The keychain must outlive the store.
    SecretStore(Keychain& borrowed, std::string serviceName);

    [[nodiscard]] ModelSecret load(const UUID& modelID);
    void save(const UUID& modelID, const ModelSecret& secret);
    void clear(const UUID& modelID);

private:
    Keychain& keychain;
    const std::string service;
    Mutex lock;
    std::unordered_map<UUID, ModelSecret> memory GUARDED_BY(lock); // never evicted
};

} // namespace quorl
