#include "platform/linux/SecretServiceKeychain.h"

#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/SessionBus.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <thread>

// with-secret-service.sh gives each suite the session that its name tells.
namespace quorl::test {
namespace {

using Bytes = std::optional<std::string>;
using Clock = std::chrono::steady_clock;

const std::string service = "com.quorltest.app";

// What a shell command prints.
std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    char part[512];
    while (const auto count = std::fread(part, 1, sizeof part, pipe.get()))
        output.append(part, count);
    return output;
}

TEST(SecretService, KeepsTheBytesOfAnItem) {
    SecretServiceKeychain keychain;
    const std::string bytes("{\"apiKey\":\"\xC3\xA4\0\xFF\"}", 17);

    keychain.add(service, "bytes", bytes);

    EXPECT_EQ(keychain.copy(service, "bytes"), bytes);
    EXPECT_EQ(SecretServiceKeychain().copy(service, "bytes"), bytes);
}

TEST(SecretService, KeepsAnEmptyItem) {
    SecretServiceKeychain keychain;

    keychain.add(service, "empty", "");

    EXPECT_EQ(keychain.copy(service, "empty"), "");
}

TEST(SecretService, HasNothingWhereNothingWasAdded) {
    EXPECT_EQ(SecretServiceKeychain().copy(service, "never added"), Bytes());
}

TEST(SecretService, ItemsAreKnownByServiceAndAccount) {
    SecretServiceKeychain keychain;

    keychain.add(service, "first", "1");
    keychain.add(service, "second", "2");
    keychain.add("com.example.other", "first", "3");

    EXPECT_EQ(keychain.copy(service, "first"), "1");
    EXPECT_EQ(keychain.copy(service, "second"), "2");
    EXPECT_EQ(keychain.copy("com.example.other", "first"), "3");
    EXPECT_EQ(keychain.copy("com.example.other", "second"), Bytes());
}

TEST(SecretService, AddingDoesNotReplace) {
    SecretServiceKeychain keychain;
    keychain.add(service, "twice", "old");

    keychain.add(service, "twice", "new");

    EXPECT_EQ(keychain.copy(service, "twice"), "old");
}

TEST(SecretService, RemovingAndAddingReplaces) {
    SecretServiceKeychain keychain;
    keychain.add(service, "replaced", "old");
    keychain.add(service, "kept", "kept");

    keychain.remove(service, "replaced");
    EXPECT_EQ(keychain.copy(service, "replaced"), Bytes());
    keychain.add(service, "replaced", "new");

    EXPECT_EQ(keychain.copy(service, "replaced"), "new");
    EXPECT_EQ(keychain.copy(service, "kept"), "kept");
}

TEST(SecretService, RemovingWhatIsNotThereIsUnseen) {
    SecretServiceKeychain().remove(service, "never added");
}

TEST(SecretService, OtherProgramsFindItemsByTheirTwoAttributes) {
    SecretServiceKeychain().add(service, "seen", "from outside");

    EXPECT_EQ(outputOf("secret-tool lookup service com.quorltest.app account seen"), "from outside");
    const auto details = outputOf("secret-tool search service com.quorltest.app account seen 2>&1");
    EXPECT_NE(details.find("label = Quorl: credentials of the model seen\n"), std::string::npos) << details;
    EXPECT_NE(details.find("attribute.service = com.quorltest.app\n"), std::string::npos) << details;
    EXPECT_NE(details.find("attribute.account = seen\n"), std::string::npos) << details;
}

TEST(SecretService, FindsAndRemovesWhatOtherProgramsStored) {
    outputOf("printf outside | secret-tool store --label=Other service com.quorltest.app account foreign");
    SecretServiceKeychain keychain;

    EXPECT_EQ(keychain.copy(service, "foreign"), "outside");
    keychain.remove(service, "foreign");

    EXPECT_EQ(outputOf("secret-tool lookup service com.quorltest.app account foreign"), "");
}

TEST(SecretService, ServesSeveralThreadsAtOnce) {
    SecretServiceKeychain keychain;
    keychain.add(service, "shared", "value");

    std::vector<Bytes> copies(8);
    {
        std::vector<std::jthread> threads;
        for (auto& copy : copies)
            threads.emplace_back([&] { copy = keychain.copy(service, "shared"); });
    }

    EXPECT_EQ(copies, std::vector<Bytes>(8, "value"));
}

TEST(SecretService, IsChosenWhereTheSessionHasOne) {
    const auto keychain = makeKeychain(xdgDirectories());

    EXPECT_NE(dynamic_cast<SecretServiceKeychain*>(keychain.get()), nullptr);
}

TEST(LockedSecretService, LooksEmptyWhereNobodyCanUnlockIt) {
    SecretServiceKeychain keychain(std::chrono::seconds(20));

    EXPECT_EQ(keychain.copy(service, "locked"), Bytes());
    EXPECT_EQ(keychain.copy(service, "locked"), Bytes());
    EXPECT_EQ(keychain.copy(service, "never added"), Bytes());
}

TEST(LockedSecretService, RefusedChangesAreUnseen) {
    SecretServiceKeychain keychain(std::chrono::seconds(20));

    keychain.add(service, "new", "value");
    keychain.remove(service, "locked");

    EXPECT_EQ(keychain.copy(service, "new"), Bytes());
    EXPECT_NE(
        outputOf("secret-tool search service com.quorltest.app account locked 2>&1").find("label = Kept"),
        std::string::npos);
}

TEST(RestartedSecretService, IsFoundAgain) {
    SecretServiceKeychain keychain;
    keychain.add(service, "kept", "value");
    ASSERT_EQ(keychain.copy(service, "kept"), "value");

    outputOf("printf secret | gnome-keyring-daemon --replace --unlock --components=secrets 2>&1");

    EXPECT_EQ(keychain.copy(service, "kept"), "value");
}

// A bus of the test's own, so that it can be ended.
TEST(LostSessionBus, DoesNotTakeTheProgramWithIt) {
    std::istringstream lines(
        outputOf("dbus-daemon --session --fork --print-address=1 --print-pid=1 2>/dev/null"));
    std::string address;
    pid_t bus = 0;
    ASSERT_TRUE(std::getline(lines, address) && lines >> bus);
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    static_cast<void>(SessionBus::hasSecretService());
    auto* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    ASSERT_NE(connection, nullptr);

    kill(bus, SIGTERM);
    // GLib ends the process, if it does, in what it calls then.
    bool isClosed = false;
    g_signal_connect(connection, "closed",
                     G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, bool* closed) { *closed = true; }),
                     &isClosed);
    const auto deadline = Clock::now() + std::chrono::seconds(60);
    while (!isClosed && Clock::now() < deadline)
        g_main_context_iteration(nullptr, FALSE);

    EXPECT_TRUE(isClosed);
    EXPECT_EQ(SecretServiceKeychain(std::chrono::seconds(5)).copy(service, "account"), Bytes());
    g_object_unref(connection);
}

// Owns the service's name and lets every call go by.
class SilentService {
public:
    SilentService()
        : address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)),
          connection(g_dbus_connection_new_for_address_sync(
              address,
              static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
              nullptr, nullptr, nullptr)) {
        g_variant_unref(g_dbus_connection_call_sync(
            connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "RequestName", g_variant_new("(su)", "org.freedesktop.secrets", 0u), nullptr,
            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        g_dbus_connection_add_filter(connection, swallow, nullptr, nullptr);
    }
    SilentService(const SilentService&) = delete;
    SilentService& operator=(const SilentService&) = delete;
    ~SilentService() {
        g_dbus_connection_close_sync(connection, nullptr, nullptr);
        g_object_unref(connection);
        g_free(address);
    }

private:
    static GDBusMessage* swallow(GDBusConnection*, GDBusMessage* message, gboolean isIncoming, gpointer) {
        if (!isIncoming)
            return message;
        g_object_unref(message);
        return nullptr;
    }

    char* address;
    GDBusConnection* connection;
};

TEST(SilentSecretService, CostsOnePatienceAndNotOneForEachItem) {
    const SilentService silent;
    SecretServiceKeychain keychain(std::chrono::milliseconds(300));

    EXPECT_EQ(keychain.copy(service, "first"), Bytes());
    const auto start = Clock::now();
    for (int number = 0; number < 20; ++number)
        EXPECT_EQ(keychain.copy(service, "item " + std::to_string(number)), Bytes());

    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(300));
}

TEST(SilentSecretService, HoldsUpNoChangeForLongerThanItsPatience) {
    const SilentService silent;
    SecretServiceKeychain keychain(std::chrono::milliseconds(100));

    const auto start = Clock::now();
    keychain.add(service, "account", "bytes");
    keychain.remove(service, "account");

    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
}

} // namespace
} // namespace quorl::test
