#pragma once

#include "platform/Platform.h"

#include <chrono>
#include <memory>

namespace quorl {

// The desktop's Secret Service, through libsecret: items with the attributes `service` and `account` in the
// default collection. Adding does not replace an item that is there.
//
// A locked collection may ask its user in a dialog of its own, for which a call waits at most `patience`.
// `copy` asks once in a process, not once for each item: after a refusal it goes on with what is unlocked,
// and once it has waited in vain, or the service could not be reached, it answers nothing at once. Thread:
// any.
class SecretServiceKeychain : public Keychain {
public:
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::minutes(1);

    explicit SecretServiceKeychain(std::chrono::milliseconds patience = defaultPatience);
    ~SecretServiceKeychain() override;

    [[nodiscard]] std::optional<std::string> copy(const std::string& service,
                                                  const std::string& account) override;
    void add(const std::string& service, const std::string& account, const std::string& bytes) override;
    void remove(const std::string& service, const std::string& account) override;

private:
    struct State;
    const std::shared_ptr<State> state; // shared with a call that has outlasted its patience
};

} // namespace quorl
