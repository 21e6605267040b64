#pragma once

#include "platform/Platform.h"
#include "platform/linux/QSettingsDefaults.h"
#include "platform/linux/QtMainThread.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/XDGDirectories.h"

#include <memory>

namespace quorl {

/// To be called first in main(): see SessionBus::forbidAutolaunch.
void forbidBusAutolaunch();

/// The Secret Service where the session has one, else files below `directories.config`. May take two seconds
/// where the session bus does not answer.
[[nodiscard]] std::unique_ptr<Keychain> makeKeychain(const XDGDirectories& directories);

// The services of a Linux desktop, all in one. Made after the application object, on the main thread, and
// outlives whatever was given `services`:
//
//     forbidBusAutolaunch();
//     QGuiApplication application(argc, argv);
//     LinuxPlatform desktop;
//     AppModel model(desktop.services, …);
class LinuxPlatform {
    // Ahead of `services`, which refers to them.
    QtMainThread mainThread;
    SystemClock clock;
    QSettingsDefaults defaults;
    std::unique_ptr<Keychain> keychain;

public:
    explicit LinuxPlatform(XDGDirectories directories = xdgDirectories());

    const XDGDirectories directories;
    Platform services;
};

} // namespace quorl
