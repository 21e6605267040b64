#include "platform/linux/DesktopMotion.h"

#include "platform/PrivateBus.h"
#include "support/Fakes.h"

#include <gtest/gtest.h>

#include <map>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace quorl::test {
namespace {

constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* gnome = "org.gnome.desktop.interface";
constexpr const char* kde = "org.kde.kdeglobals.KDE";

// The settings of a desktop portal, as text that GLib reads as values: {"org…": {"key": "uint32 1"}}.
using PortalSettings = std::map<std::string, std::map<std::string, std::string>>;

GVariant* parsed(const std::string& text) {
    return g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, nullptr);
}

// A desktop portal with these settings, on a thread of its own.
class FakePortal {
public:
    FakePortal(const PrivateBus& bus, PortalSettings given)
        : settings(std::move(given)), connection(bus.connect()), context(g_main_context_new()),
          loop(g_main_loop_new(context, FALSE)) {
        g_main_context_push_thread_default(context);
        auto* interfaces = g_dbus_node_info_new_for_xml(R"(<node>
            <interface name="org.freedesktop.portal.Settings">
                <method name="ReadAll"><arg type="as" direction="in"/><arg type="a{sa{sv}}" direction="out"/></method>
                <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
            </interface></node>)",
                                                        nullptr);
        static const GDBusInterfaceVTable table{answer, nullptr, nullptr, {}};
        g_dbus_connection_register_object(connection, path, interfaces->interfaces[0], &table, this, nullptr,
                                          nullptr);
        g_dbus_node_info_unref(interfaces);
        g_main_context_pop_thread_default(context);
        own(connection, "org.freedesktop.portal.Desktop");
        thread = std::thread([this] { g_main_loop_run(loop); });
    }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;
    ~FakePortal() {
        auto* quit = g_idle_source_new();
        g_source_set_callback(
            quit,
            [](gpointer self) -> gboolean {
                g_main_loop_quit(static_cast<GMainLoop*>(self));
                return G_SOURCE_REMOVE;
            },
            loop, nullptr);
        g_source_attach(quit, context);
        g_source_unref(quit);
        thread.join();
        g_dbus_connection_close_sync(connection, nullptr, nullptr);
        g_object_unref(connection);
        g_main_loop_unref(loop);
        g_main_context_unref(context);
    }

    void change(const char* space, const char* key, const std::string& value) {
        g_dbus_connection_emit_signal(connection, nullptr, path, "org.freedesktop.portal.Settings",
                                      "SettingChanged", g_variant_new("(ssv)", space, key, parsed(value)),
                                      nullptr);
    }

private:
    static constexpr const char* path = "/org/freedesktop/portal/desktop";

    static void answer(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* arguments, GDBusMethodInvocation* invocation, gpointer self) {
        GVariantBuilder all;
        g_variant_builder_init(&all, G_VARIANT_TYPE("(a{sa{sv}})"));
        g_variant_builder_open(&all, G_VARIANT_TYPE("a{sa{sv}}"));
        const char** asked = nullptr;
        g_variant_get(arguments, "(^a&s)", &asked);
        for (const auto& [space, values] : static_cast<FakePortal*>(self)->settings) {
            if (g_strv_contains(asked, space.c_str()) == FALSE)
                continue;
            GVariantBuilder keys;
            g_variant_builder_init(&keys, G_VARIANT_TYPE("a{sv}"));
            for (const auto& [key, value] : values)
                g_variant_builder_add(&keys, "{sv}", key.c_str(), parsed(value));
            g_variant_builder_add(&all, "{sa{sv}}", space.c_str(), &keys);
        }
        g_free(asked);
        g_variant_builder_close(&all);
        g_dbus_method_invocation_return_value(invocation, g_variant_builder_end(&all));
    }

    const PortalSettings settings;
    GDBusConnection* const connection;
    GMainContext* const context;
    GMainLoop* const loop;
    std::thread thread;
};

bool hasGNOMESchema() {
    auto* source = g_settings_schema_source_get_default();
    auto* schema = source ? g_settings_schema_source_lookup(source, gnome, TRUE) : nullptr;
    if (schema)
        g_settings_schema_unref(schema);
    return schema != nullptr;
}

// GNOME's switch, in the settings that GLib keeps in memory for this process.
class GNOMESwitch {
public:
    GNOMESwitch() : settings(g_settings_new(gnome)) {}
    GNOMESwitch(const GNOMESwitch&) = delete;
    GNOMESwitch& operator=(const GNOMESwitch&) = delete;
    ~GNOMESwitch() {
        g_settings_reset(settings, key);
        g_object_unref(settings);
    }

    void set(bool animates) { g_settings_set_boolean(settings, key, animates ? TRUE : FALSE); }

private:
    static constexpr const char* key = "enable-animations";
    GSettings* const settings;
};

class DesktopMotionTest : public testing::Test {
protected:
    // Read once by GLib: nothing of the user's own is touched in this process.
    static void SetUpTestSuite() { setenv("GSETTINGS_BACKEND", "memory", 1); }

    void writeKDEGlobals(const std::string& lines) const {
        std::ofstream(config.path / "kdeglobals") << lines;
    }

    bool answer(std::chrono::milliseconds patience = std::chrono::seconds(30)) {
        DesktopMotion motion(loop, config.path, patience);
        return firstAnswer(motion);
    }

    bool firstAnswer(const DesktopMotion& motion) {
        loop.waitForPosted(1);
        loop.runPosted();
        return motion.isReduced();
    }

    bool kdeAnswer(const std::string& lines) {
        writeKDEGlobals(lines);
        return answer();
    }

    TemporaryFolder config;
    TemporaryFolder runtime;
    const ScopedVariable address{"DBUS_SESSION_BUS_ADDRESS", nullptr};
    const ScopedVariable runtimeFolder{"XDG_RUNTIME_DIR", runtime.path.c_str()};
    TestLoop loop;
};

// With a bus of its own.
class MotionOnABusTest : public DesktopMotionTest {
protected:
    void SetUp() override {
        if (!bus.isRunning())
            GTEST_SKIP() << "There is no dbus-daemon here.";
    }

    bool portalAnswer(const PortalSettings& settings) {
        const FakePortal portal(bus, settings);
        return answer();
    }

    const PrivateBus bus;
};

TEST_F(DesktopMotionTest, IsNotReducedUntilTheDesktopHasAnswered) {
    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");
    DesktopMotion motion(loop, config.path);
    EXPECT_FALSE(motion.isReduced());
    loop.waitForPosted(1);
    EXPECT_FALSE(motion.isReduced());

    loop.runPosted();
    EXPECT_TRUE(motion.isReduced());
}

TEST_F(DesktopMotionTest, WithoutABusOrASettingIsNotReduced) {
    EXPECT_FALSE(answer());
}

TEST_F(DesktopMotionTest, ABusThatIsNotThereIsDoneWithout) {
    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");
    for (const auto& dead : {"unix:path=" + (runtime.path / "gone").string(), std::string("nonsense"),
                             std::string("disabled:"), std::string("autolaunch:")}) {
        const ScopedVariable named("DBUS_SESSION_BUS_ADDRESS", dead.c_str());
        EXPECT_TRUE(answer()) << dead;
    }
}

TEST_F(DesktopMotionTest, ABusThatNeverAnswersCostsNoMoreThanThePatience) {
    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");
    const auto path = (runtime.path / "silent").string();
    const int silent = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    path.copy(place.sun_path, sizeof place.sun_path - 1);
    ASSERT_EQ(bind(silent, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
    ASSERT_EQ(listen(silent, 4), 0);
    const ScopedVariable named("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str());

    EXPECT_TRUE(answer(std::chrono::milliseconds(50)));

    close(silent);
}

TEST_F(DesktopMotionTest, NoAnimationsOfKDEsReduce) {
    EXPECT_TRUE(kdeAnswer("[KDE]\nAnimationDurationFactor=0\n"));
    EXPECT_TRUE(kdeAnswer("[Colors:Header][Inactive]\nA=1\n\n[KDE]\nSingleClick=true\n"
                          " AnimationDurationFactor[$i] = 0.0 \r\n[WM]\nB=2\n"));

    EXPECT_FALSE(kdeAnswer("[KDE]\nAnimationDurationFactor=0.5\n"));
    EXPECT_FALSE(kdeAnswer("[KDE]\nAnimationDurationFactor=x\n"));
    EXPECT_FALSE(kdeAnswer("[KDE]\nAnimationDurationFactor=0 percent\n"));
    EXPECT_FALSE(kdeAnswer("[KDE]\nAnimationDurationFactor\n"));
    EXPECT_FALSE(kdeAnswer("[KDE]\nAnimationDurationFactor=\n"));
    EXPECT_FALSE(kdeAnswer("[KDE][Other]\nAnimationDurationFactor=0\n"));
    EXPECT_FALSE(kdeAnswer("AnimationDurationFactor=0\n[KDE]\n[Other]\nAnimationDurationFactor=0\n"));
    EXPECT_FALSE(kdeAnswer("[KDE]\nOtherAnimationDurationFactor=0\n"));
}

TEST_F(DesktopMotionTest, AnAnswerAfterItsEndIsDropped) {
    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");
    bool isCalled = false;
    {
        DesktopMotion motion(loop, config.path);
        motion.onChange([&](bool) { isCalled = true; });
        loop.waitForPosted(1);
    }

    loop.runPosted();

    EXPECT_FALSE(isCalled);
}

TEST_F(DesktopMotionTest, TheListenerHearsOfTheFirstAnswerOnlyIfItIsAnother) {
    std::vector<bool> heard;
    DesktopMotion still(loop, config.path);
    still.onChange([&](bool isReduced) { heard.push_back(isReduced); });
    firstAnswer(still);
    EXPECT_EQ(heard, std::vector<bool>());

    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");
    DesktopMotion reduced(loop, config.path);
    reduced.onChange([&](bool isReduced) { heard.push_back(isReduced); });
    firstAnswer(reduced);
    EXPECT_EQ(heard, std::vector{true});
}

TEST_F(MotionOnABusTest, ThePortalDecides) {
    EXPECT_TRUE(portalAnswer({{appearance, {{"reduced-motion", "uint32 1"}}}}));

    EXPECT_FALSE(portalAnswer({{appearance, {{"reduced-motion", "uint32 0"}}}}));
    EXPECT_FALSE(portalAnswer({{appearance, {{"reduced-motion", "uint32 2"}}}}));
    EXPECT_FALSE(portalAnswer({{appearance, {{"color-scheme", "uint32 1"}}}}));
    EXPECT_FALSE(portalAnswer({}));
}

TEST_F(MotionOnABusTest, ThePortalsOwnSettingComesBeforeTheSwitches) {
    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");

    EXPECT_FALSE(portalAnswer(
        {{appearance, {{"reduced-motion", "uint32 0"}}}, {gnome, {{"enable-animations", "false"}}}}));
}

TEST_F(MotionOnABusTest, AnOlderPortalPassesTheSwitchesOn) {
    EXPECT_TRUE(portalAnswer({{gnome, {{"enable-animations", "false"}}}}));
    EXPECT_TRUE(portalAnswer({{kde, {{"AnimationDurationFactor", "'0'"}}}}));
    EXPECT_TRUE(portalAnswer({{kde, {{"AnimationDurationFactor", "0.0"}}}}));
    EXPECT_TRUE(portalAnswer(
        {{gnome, {{"enable-animations", "true"}}}, {kde, {{"AnimationDurationFactor", "0.0"}}}}));

    EXPECT_FALSE(portalAnswer({{gnome, {{"enable-animations", "true"}}}}));
    EXPECT_FALSE(portalAnswer({{kde, {{"AnimationDurationFactor", "'1'"}}}}));
}

TEST_F(MotionOnABusTest, AValueInOneMoreVariantCounts) {
    EXPECT_TRUE(portalAnswer({{appearance, {{"reduced-motion", "<<uint32 1>>"}}}}));
}

TEST_F(MotionOnABusTest, AValueOfAnotherTypeIsNone) {
    EXPECT_TRUE(
        portalAnswer({{appearance, {{"reduced-motion", "'0'"}}}, {gnome, {{"enable-animations", "false"}}}}));

    EXPECT_FALSE(portalAnswer({{gnome, {{"enable-animations", "uint32 0"}}}}));
    EXPECT_FALSE(portalAnswer({{kde, {{"AnimationDurationFactor", "false"}}}}));
}

TEST_F(MotionOnABusTest, AChangeIsHeard) {
    FakePortal portal(bus, {{appearance, {{"reduced-motion", "uint32 0"}}}});
    DesktopMotion motion(loop, config.path);
    std::vector<bool> heard;
    motion.onChange([&](bool isReduced) { heard.push_back(isReduced); });
    EXPECT_FALSE(firstAnswer(motion));

    portal.change(appearance, "reduced-motion", "uint32 1");
    EXPECT_TRUE(loop.runUntil([&] { return motion.isReduced(); }));
    portal.change(appearance, "color-scheme", "uint32 1");
    portal.change(appearance, "reduced-motion", "uint32 1");
    portal.change(appearance, "reduced-motion", "uint32 0");
    EXPECT_TRUE(loop.runUntil([&] { return !motion.isReduced(); }));

    EXPECT_EQ(heard, (std::vector{true, false}));
}

TEST_F(MotionOnABusTest, APortalThatComesLaterIsHeard) {
    DesktopMotion motion(loop, config.path);
    EXPECT_FALSE(firstAnswer(motion));

    FakePortal portal(bus, {});
    portal.change(gnome, "enable-animations", "false");

    EXPECT_TRUE(loop.runUntil([&] { return motion.isReduced(); }));
}

TEST_F(MotionOnABusTest, WithoutAPortalGNOMEsSwitchIsReadAndHeard) {
    if (!hasGNOMESchema())
        GTEST_SKIP() << "GNOME's schemas are not installed here.";
    GNOMESwitch animations;
    animations.set(false);
    DesktopMotion motion(loop, config.path);
    EXPECT_TRUE(firstAnswer(motion));

    animations.set(true);

    EXPECT_TRUE(loop.runUntil([&] { return !motion.isReduced(); }));
}

TEST_F(MotionOnABusTest, ThePortalsWordForGNOMEsSwitchComesBeforeTheSwitch) {
    if (!hasGNOMESchema())
        GTEST_SKIP() << "GNOME's schemas are not installed here.";
    GNOMESwitch animations;
    animations.set(false);

    EXPECT_FALSE(portalAnswer({{gnome, {{"enable-animations", "true"}}}}));
}

// In a process of its own, since GLib looks for schemas once.
class MotionWithSchemasTest : public MotionOnABusTest {
protected:
    void SetUp() override {
        MotionOnABusTest::SetUp();
        GTEST_FLAG_SET(death_test_style, "threadsafe");
    }

    // Leaves the process, with 0 if motion is not reduced and GNOME's schema is not there.
    [[noreturn]] void answerAndLeave() {
        const ScopedVariable data("XDG_DATA_DIRS", runtime.path.c_str());
        const ScopedVariable home("XDG_DATA_HOME", runtime.path.c_str());
        g_log_set_always_fatal(G_LOG_LEVEL_CRITICAL); // nothing GLib would complain of
        const bool isReduced = answer();
        std::_Exit(isReduced || hasGNOMESchema() ? 1 : 0);
    }
};

TEST_F(MotionWithSchemasTest, WithoutAnySchemasTheProgramLives) {
    EXPECT_EXIT(answerAndLeave(), testing::ExitedWithCode(0), "");
}

TEST_F(MotionWithSchemasTest, WithOtherSchemasThanGNOMEsTheProgramLives) {
    const auto schemas = runtime.path / "glib-2.0/schemas";
    std::filesystem::create_directories(schemas);
    std::ofstream(schemas / "org.example.other.gschema.xml")
        << R"(<schemalist><schema id="org.example.other" path="/org/example/other/">
              <key name="enable-animations" type="b"><default>false</default></key>
              </schema></schemalist>)";
    if (std::system(("glib-compile-schemas " + schemas.string()).c_str()) != 0)
        GTEST_SKIP() << "There is no glib-compile-schemas here.";

    EXPECT_EXIT(answerAndLeave(), testing::ExitedWithCode(0), "");
}

TEST_F(MotionOnABusTest, AMutePortalCostsNoMoreThanThePatience) {
    writeKDEGlobals("[KDE]\nAnimationDurationFactor=0\n");
    auto* connection = bus.connect();
    ASSERT_TRUE(own(connection, "org.freedesktop.portal.Desktop"));
    g_dbus_connection_add_filter(
        connection,
        [](GDBusConnection*, GDBusMessage* message, gboolean, gpointer) -> GDBusMessage* {
            g_object_unref(message);
            return nullptr;
        },
        nullptr, nullptr);

    EXPECT_TRUE(answer(std::chrono::milliseconds(50)));

    g_object_unref(connection);
}

TEST_F(MotionOnABusTest, EndingDoesNotWaitForAnAnswer) {
    FakePortal portal(bus, {});
    for (int round = 0; round < 20; ++round)
        const DesktopMotion motion(loop, config.path);
}

} // namespace
} // namespace quorl::test
