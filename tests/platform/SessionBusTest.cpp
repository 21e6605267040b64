#include "platform/linux/SessionBus.h"

#include "platform/TemporaryFolder.h"
#include "platform/linux/FileKeychain.h"
#include "platform/linux/LinuxPlatform.h"

#include <gio/gio.h> // ahead of Qt, one of whose macros is a name in it

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <fstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quorl::test {
namespace {

using Clock = std::chrono::steady_clock;

// A socket that takes connections and says nothing.
class SilentSocket {
public:
    explicit SilentSocket(const std::filesystem::path& path) : descriptor(socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.string().copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(descriptor, 16) != 0)
            std::abort();
    }
    SilentSocket(const SilentSocket&) = delete;
    SilentSocket& operator=(const SilentSocket&) = delete;
    ~SilentSocket() { close(descriptor); }

private:
    const int descriptor;
};

// A graphical session whose dbus-launch leaves a mark, with or without a bus.
class SessionBusEnvironment : public testing::Test {
protected:
    SessionBusEnvironment() {
        const auto program = folder.path / "dbus-launch";
        std::ofstream(program) << "#!/bin/sh\ntouch " << mark().string() << "\n";
        std::filesystem::permissions(program, std::filesystem::perms(0755));
        setenv("PATH", (folder.path.string() + ":" + std::getenv("PATH")).c_str(), 1);
    }

    std::filesystem::path mark() const { return folder.path / "launched"; }
    void setAddress(const std::string& text) { setenv("DBUS_SESSION_BUS_ADDRESS", text.c_str(), 1); }
    std::string addressNow() const {
        const char* value = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        return value ? value : "";
    }
    bool choosesFiles() const {
        const auto keychain = makeKeychain({folder.path, folder.path, folder.path});
        return dynamic_cast<FileKeychain*>(keychain.get()) != nullptr;
    }

    TemporaryFolder folder;
    ScopedVariable display{"DISPLAY", ":987"};
    ScopedVariable address{"DBUS_SESSION_BUS_ADDRESS", nullptr};
    ScopedVariable runtime{"XDG_RUNTIME_DIR", folder.path.c_str()};
    ScopedVariable path{"PATH", std::getenv("PATH")};
};

TEST_F(SessionBusEnvironment, IsAnnouncedByItsAddress) {
    setAddress("unix:path=/run/somewhere");

    EXPECT_TRUE(SessionBus::isAnnounced());
}

TEST_F(SessionBusEnvironment, IsAnnouncedByTheSocketInTheRuntimeFolder) {
    EXPECT_FALSE(SessionBus::isAnnounced());
    std::ofstream(folder.path / "bus") << "no socket";
    EXPECT_FALSE(SessionBus::isAnnounced());

    std::filesystem::remove(folder.path / "bus");
    const SilentSocket bus(folder.path / "bus");
    EXPECT_TRUE(SessionBus::isAnnounced());
    setAddress("");
    EXPECT_TRUE(SessionBus::isAnnounced());
}

TEST_F(SessionBusEnvironment, AnOrderToStartABusAnnouncesNone) {
    setAddress("autolaunch:");

    EXPECT_FALSE(SessionBus::isAnnounced());
}

TEST_F(SessionBusEnvironment, ForbiddingLeavesABusThatIsThere) {
    setAddress("unix:path=/run/somewhere");
    forbidBusAutolaunch();
    EXPECT_EQ(addressNow(), "unix:path=/run/somewhere");

    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    const SilentSocket bus(folder.path / "bus");
    forbidBusAutolaunch();
    EXPECT_EQ(addressNow(), "");
}

TEST_F(SessionBusEnvironment, WithoutABusNoneIsStartedAndFilesAreChosen) {
    EXPECT_TRUE(choosesFiles());

    EXPECT_FALSE(std::filesystem::exists(mark()));
}

TEST_F(SessionBusEnvironment, ForbiddingKeepsGLibFromStartingABus) {
    forbidBusAutolaunch();
    GError* error = nullptr;
    auto* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);

    EXPECT_EQ(connection, nullptr);
    EXPECT_NE(error, nullptr);
    g_clear_error(&error);
    EXPECT_FALSE(std::filesystem::exists(mark()));
}

TEST_F(SessionBusEnvironment, WithoutForbiddingGLibWouldStartOne) {
    EXPECT_EQ(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr), nullptr);

    EXPECT_TRUE(std::filesystem::exists(mark()));
}

TEST_F(SessionBusEnvironment, FilesAreChosenWhereTheAddressIsDead) {
    setAddress("unix:path=" + (folder.path / "gone").string());
    EXPECT_TRUE(choosesFiles());

    setAddress("nonsense");
    EXPECT_TRUE(choosesFiles());
    setAddress("disabled:");
    EXPECT_TRUE(choosesFiles());
    EXPECT_FALSE(std::filesystem::exists(mark()));
}

TEST_F(SessionBusEnvironment, ABusThatNeverAnswersIsGivenUp) {
    const SilentSocket bus(folder.path / "silent");
    // By its address: GLib remembers the runtime folder of the process's first look.
    setAddress("unix:path=" + (folder.path / "silent").string());
    const auto start = Clock::now();

    EXPECT_FALSE(SessionBus::hasSecretService(std::chrono::milliseconds(100)));

    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
    EXPECT_FALSE(std::filesystem::exists(mark()));
}

TEST_F(SessionBusEnvironment, ThePlatformIsWholeWithoutABus) {
    forbidBusAutolaunch();
    const ScopedVariable config("XDG_CONFIG_HOME", (folder.path / "config").c_str());
    const ScopedVariable data("XDG_DATA_HOME", (folder.path / "data").c_str());
    int count = 0;
    const QCoreApplication application(count, nullptr);
    LinuxPlatform desktop;

    bool isRun = false;
    desktop.services.mainThread.post([&] { isRun = true; });
    desktop.services.defaults.setString("draft.kind", "decision");
    desktop.services.keychain.add("com.quorltest.app", "account", "bytes");
    QCoreApplication::processEvents();

    EXPECT_TRUE(isRun);
    EXPECT_TRUE(std::filesystem::exists(folder.path / "config/com.quorltest.app/defaults.ini"));
    EXPECT_TRUE(std::filesystem::exists(folder.path / "config/com.quorltest.app/secrets/account.json"));
    EXPECT_EQ(desktop.services.applicationSupport, folder.path / "data");
    EXPECT_GT(desktop.services.clock.now().time_since_epoch().count(), 1.7e9);
}

} // namespace
} // namespace quorl::test
