#pragma once

#include "platform/TemporaryFolder.h"

#include <gio/gio.h>

#include <fstream>
#include <memory>
#include <string>

namespace quorl::test {

// A session bus of the test's own, announced by the environment as long as it lives, on which nothing is
// started that the machine happens to have installed.
class PrivateBus {
public:
    PrivateBus() {
        const auto file = folder.path / "bus.conf";
        std::ofstream(file) << "<busconfig><type>session</type><listen>unix:dir=" + folder.path.string() +
                                   "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                                   "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>";
        constexpr int flags = G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_SILENCE;
        process = g_subprocess_new(static_cast<GSubprocessFlags>(flags), nullptr, "dbus-daemon", "--nofork",
                                   "--print-address", ("--config-file=" + file.string()).c_str(), nullptr);
        if (!process)
            return;
        auto* output = g_data_input_stream_new(g_subprocess_get_stdout_pipe(process));
        const std::unique_ptr<char, decltype(&g_free)> line(
            g_data_input_stream_read_line(output, nullptr, nullptr, nullptr), g_free);
        g_object_unref(output);
        address = line ? line.get() : "";
        variable = std::make_unique<ScopedVariable>("DBUS_SESSION_BUS_ADDRESS", address.c_str());
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        if (!process)
            return;
        g_subprocess_force_exit(process);
        g_subprocess_wait(process, nullptr, nullptr);
        g_object_unref(process);
    }

    /// False on a machine without a bus daemon.
    [[nodiscard]] bool isRunning() const { return !address.empty(); }

    /// The caller's own.
    [[nodiscard]] GDBusConnection* connect() const {
        constexpr int flags =
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
        return g_dbus_connection_new_for_address_sync(
            address.c_str(), static_cast<GDBusConnectionFlags>(flags), nullptr, nullptr, nullptr);
    }

private:
    TemporaryFolder folder;
    GSubprocess* process = nullptr;
    std::string address;
    std::unique_ptr<ScopedVariable> variable;
};

/// Makes the connection the owner of a name. False where the bus refuses it.
inline bool own(GDBusConnection* connection, const char* name) {
    auto* reply = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name, 0u), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (!reply)
        return false;
    g_variant_unref(reply);
    return true;
}

} // namespace quorl::test
