#include "platform/linux/SessionBus.h"

#include "platform/linux/BoundedCall.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace quorl::SessionBus {

namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* secretService = "org.freedesktop.secrets";

// The conditions under which D-Bus libraries use the socket; where it fails one of them they would go on to
// start a bus.
bool hasSocketOfOurs() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): see forbidAutolaunch
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    if (!folder || *folder == '\0')
        return false;
    struct stat status {};
    return ::stat((std::string(folder) + "/bus").c_str(), &status) == 0 && S_ISSOCK(status.st_mode) &&
           status.st_uid == ::geteuid();
}

using Reply = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;

// A method of the bus itself.
Reply callBus(GDBusConnection* connection, const char* method, GVariant* arguments, const char* replyType,
              GCancellable* cancellable) {
    return {g_dbus_connection_call_sync(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                        "org.freedesktop.DBus", method, arguments, G_VARIANT_TYPE(replyType),
                                        G_DBUS_CALL_FLAGS_NONE, -1, cancellable, nullptr),
            g_variant_unref};
}

bool hasOwner(GDBusConnection* connection, GCancellable* cancellable) {
    const auto reply =
        callBus(connection, "NameHasOwner", g_variant_new("(s)", secretService), "(b)", cancellable);
    gboolean isOwned = FALSE;
    if (reply)
        g_variant_get(reply.get(), "(b)", &isOwned);
    return isOwned != FALSE;
}

bool isActivatable(GDBusConnection* connection, GCancellable* cancellable) {
    const auto reply = callBus(connection, "ListActivatableNames", nullptr, "(as)", cancellable);
    if (!reply)
        return false;
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> names(
        g_variant_get_child_value(reply.get(), 0), g_variant_unref);
    const std::unique_ptr<const gchar*, decltype(&g_free)> list(g_variant_get_strv(names.get(), nullptr),
                                                                g_free);
    return g_strv_contains(list.get(), secretService) != FALSE;
}

} // namespace

bool isAnnounced() {
    const char* address = std::getenv(addressVariable); // NOLINT(concurrency-mt-unsafe): see forbidAutolaunch
    if (!address || *address == '\0')
        return hasSocketOfOurs();
    // This address is the order to start a bus.
    return !std::string_view(address).starts_with("autolaunch:");
}

void forbidAutolaunch() {
    if (isAnnounced())
        return;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread is there yet
    ::setenv(addressVariable, "disabled:", 1);
}

bool hasSecretService(std::chrono::milliseconds patience) {
    if (!isAnnounced())
        return false;
    return callWithin<bool>(patience,
                            [](GCancellable* cancellable) {
                                auto* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr);
                                if (!connection)
                                    return false;
                                // GLib ends the process with the bus unless told otherwise. This connection
                                // is the one that libsecret will use; our reference to it is never given
                                // back, since the next one made would have forgotten.
                                g_dbus_connection_set_exit_on_close(connection, FALSE);
                                return hasOwner(connection, cancellable) ||
                                       isActivatable(connection, cancellable);
                            })
        .value_or(false);
}

} // namespace quorl::SessionBus
