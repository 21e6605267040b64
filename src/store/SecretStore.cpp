#include "store/SecretStore.h"

#include "platform/Platform.h"

namespace quorl {

SecretStore::SecretStore(Keychain& borrowed, std::string serviceName)
    : keychain(borrowed), service(std::move(serviceName)) {}

ModelSecret SecretStore::load(const UUID& modelID) {
    // Held while the keychain is read, so that two threads that ask for the same model read it once.
    const MutexLock guard(lock);
    if (const auto known = memory.find(modelID); known != memory.end())
        return known->second;
    const auto stored = keychain.copy(service, modelID.text());
    const auto secret = stored ? ModelSecret::fromJSON(*stored) : std::nullopt;
    // An empty value is remembered too: a model without credentials is not asked for again.
    return memory.emplace(modelID, secret.value_or(ModelSecret{})).first->second;
}

void SecretStore::save(const UUID& modelID, const ModelSecret& secret) {
    {
        const MutexLock guard(lock);
        memory.insert_or_assign(modelID, secret);
    }
    const auto json = secret.json();
    if (!json)
        return;
    keychain.remove(service, modelID.text());
    keychain.add(service, modelID.text(), *json);
}

void SecretStore::clear(const UUID& modelID) {
    {
        const MutexLock guard(lock);
        memory.insert_or_assign(modelID, ModelSecret{});
    }
    keychain.remove(service, modelID.text());
}

} // namespace quorl
