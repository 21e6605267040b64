#pragma once

#include <chrono>

// The user's session bus, found without starting one. Thread: any, but for `forbidBusAutolaunch`.
namespace quorl::SessionBus {

/// The environment names a bus, or the runtime folder has its socket. Connects to nothing.
[[nodiscard]] bool isAnnounced();

/// Sees to it that no library of this process starts a bus of its own with dbus-launch where none is
/// announced, which would outlive the program. To be called first in main(), before any thread and any
/// library that might connect.
///
/// Child processes inherit "disabled:", which every D-Bus library refuses at once as an address of no known
/// kind. They lose nothing but the private bus that each of them would have started; dbus-run-session and
/// dbus-launch set an address of their own and work as before.
void forbidAutolaunch();

/// A Secret Service runs on the bus or would be started by it. False if the bus is not there or does not
/// answer within `patience`.
[[nodiscard]] bool hasSecretService(std::chrono::milliseconds patience = std::chrono::seconds(2));

} // namespace quorl::SessionBus
