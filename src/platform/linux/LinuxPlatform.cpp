#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/FileKeychain.h"
#include "platform/linux/SecretServiceKeychain.h"
#include "platform/linux/SessionBus.h"

namespace quorl {

void forbidBusAutolaunch() {
    SessionBus::forbidAutolaunch();
}

std::unique_ptr<Keychain> makeKeychain(const XDGDirectories& directories) {
    if (SessionBus::hasSecretService())
        return std::make_unique<SecretServiceKeychain>();
    return std::make_unique<FileKeychain>(directories.config);
}

LinuxPlatform::LinuxPlatform(XDGDirectories places)
    : defaults(defaultsFile(places)), keychain(makeKeychain(places)),
      directories(std::move(places)), services{mainThread, clock, defaults, *keychain,
                                               applicationSupportDirectory(directories)} {}

} // namespace quorl
