#include "platform/linux/DesktopMotion.h"

#include "platform/linux/BoundedCall.h"
#include "platform/linux/SessionBus.h"

#include <fstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include <gio/gio.h>

namespace quorl {

namespace {

namespace Portal {
constexpr const char* name = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
} // namespace Portal

// A setting under the name that the portal has for it. GNOME's schema and key have the same.
struct Key {
    const char* space;
    const char* key;
};

constexpr Key portalKey{"org.freedesktop.appearance", "reduced-motion"};
constexpr Key gnomeKey{"org.gnome.desktop.interface", "enable-animations"};
constexpr Key kdeKey{"org.kde.kdeglobals.KDE", "AnimationDurationFactor"};

struct Release {
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GSource* source) const { g_source_unref(source); }
    void operator()(GSettings* settings) const { g_object_unref(settings); }
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
    void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Release>;

// What is known of each setting.
struct Settings {
    std::optional<bool> portalReduces;
    std::optional<bool> gnomeAnimates;
    std::optional<bool> kdeAnimates;

    // Where one of the two desktops runs, the switch of the other stands at its default, which is on.
    [[nodiscard]] bool isReduced() const {
        return portalReduces.value_or(gnomeAnimates == false || kdeAnimates == false);
    }
};

std::optional<bool> kdeAnimatesAt(const std::string& factor) {
    char* end = nullptr;
    const double number = g_ascii_strtod(factor.c_str(), &end);
    return end == factor.c_str() || *end != '\0' ? std::nullopt : std::optional(number > 0);
}

// Portals put some values into one more variant.
Owned<GVariant> unpacked(GVariant* value) {
    Owned<GVariant> inner(g_variant_ref(value));
    while (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_VARIANT))
        inner.reset(g_variant_get_variant(inner.get()));
    return inner;
}

bool is(const Key& known, std::string_view space, std::string_view key) {
    return space == known.space && key == known.key;
}

// Takes over one setting of the portal's; one of another type is none.
void take(Settings& settings, const char* space, const char* key, GVariant* packed) {
    const auto value = unpacked(packed);
    const auto has = [&](const GVariantType* type) {
        return g_variant_is_of_type(value.get(), type) != FALSE;
    };
    if (is(portalKey, space, key) && has(G_VARIANT_TYPE_UINT32))
        settings.portalReduces = g_variant_get_uint32(value.get()) == 1;
    else if (is(gnomeKey, space, key) && has(G_VARIANT_TYPE_BOOLEAN))
        settings.gnomeAnimates = g_variant_get_boolean(value.get()) != FALSE;
    else if (is(kdeKey, space, key) && has(G_VARIANT_TYPE_DOUBLE))
        settings.kdeAnimates = g_variant_get_double(value.get()) > 0;
    else if (is(kdeKey, space, key) && has(G_VARIANT_TYPE_STRING))
        settings.kdeAnimates = kdeAnimatesAt(g_variant_get_string(value.get(), nullptr));
}

using Connection = std::shared_ptr<GDBusConnection>; // so that one that comes too late is freed as well

// A connection of our own and not GLib's shared one, which ends the process with the bus. Null where there is
// none.
Connection connect(std::chrono::milliseconds patience) {
    if (!SessionBus::isAnnounced())
        return nullptr;
    return callWithin<Connection>(
               patience,
               [](GCancellable* cancellable) -> Connection {
                   const std::unique_ptr<char, decltype(&g_free)> address(
                       g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, cancellable, nullptr), g_free);
                   if (!address)
                       return nullptr;
                   constexpr int flags = G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
                   auto* made = g_dbus_connection_new_for_address_sync(
                       address.get(), static_cast<GDBusConnectionFlags>(flags), nullptr, cancellable,
                       nullptr);
                   return made ? Connection(made, g_object_unref) : nullptr;
               })
        .value_or(nullptr);
}

// All of the portal's settings that count, in one question; every version of it answers this one.
void readPortal(Settings& settings, GDBusConnection* connection, std::chrono::milliseconds patience,
                GCancellable* cancellable) {
    const char* spaces[] = {portalKey.space, gnomeKey.space, kdeKey.space, nullptr};
    const Owned<GVariant> reply(g_dbus_connection_call_sync(
        connection, Portal::name, Portal::path, Portal::settings, "ReadAll", g_variant_new("(^as)", spaces),
        G_VARIANT_TYPE("(a{sa{sv}})"), G_DBUS_CALL_FLAGS_NONE, static_cast<int>(patience.count()),
        cancellable, nullptr));
    if (!reply)
        return;
    const Owned<GVariant> all(g_variant_get_child_value(reply.get(), 0));
    GVariantIter eachSpace;
    g_variant_iter_init(&eachSpace, all.get());
    const char* space = nullptr;
    GVariant* values = nullptr;
    while (g_variant_iter_next(&eachSpace, "{&s@a{sv}}", &space, &values)) {
        const Owned<GVariant> owned(values);
        GVariantIter eachKey;
        g_variant_iter_init(&eachKey, values);
        const char* key = nullptr;
        GVariant* value = nullptr;
        while (g_variant_iter_next(&eachKey, "{&sv}", &key, &value)) {
            take(settings, space, key, value);
            g_variant_unref(value);
        }
    }
}

// Null where GNOME's schema is not installed: asking for a setting without one ends the process.
Owned<GSettings> gnomeSettings() {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    if (!source)
        return nullptr;
    const Owned<GSettingsSchema> schema(g_settings_schema_source_lookup(source, gnomeKey.space, TRUE));
    if (!schema || !g_settings_schema_has_key(schema.get(), gnomeKey.key))
        return nullptr;
    return Owned<GSettings>(g_settings_new_full(schema.get(), nullptr, nullptr));
}

bool animates(GSettings* gnome) {
    return g_settings_get_boolean(gnome, gnomeKey.key) != FALSE;
}

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// KDE's file is nearly an INI file: its groups nest as in [Colors:Button][Inactive], and a key may be marked
// as in Name[$i], so that readers of INI files refuse it or misread it.
std::optional<bool> readKDEGlobals(const std::filesystem::path& file) {
    std::ifstream lines(file);
    std::string_view group;
    std::optional<bool> animates;
    for (std::string line; std::getline(lines, line);) {
        const auto text = withoutBlanks(line);
        if (text.starts_with('[')) {
            group = text == "[KDE]" ? "KDE" : "";
            continue;
        }
        const auto equals = text.find('=');
        const auto name = withoutBlanks(text.substr(0, equals));
        if (group == "KDE" && equals != text.npos && name.substr(0, name.find('[')) == kdeKey.key)
            animates = kdeAnimatesAt(std::string(withoutBlanks(text.substr(equals + 1))));
    }
    return animates;
}

} // namespace

// The thread, and what belongs to it alone once it runs.
class DesktopMotion::Listener {
public:
    using Report = std::function<void(bool isReduced)>;

    Listener(std::filesystem::path kdeGlobals, std::chrono::milliseconds perQuestion, Report reportTo)
        : file(std::move(kdeGlobals)), patience(perQuestion), report(std::move(reportTo)),
          thread([this] { run(); }) {}
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    ~Listener() {
        g_cancellable_cancel(cancellable.get());
        // By a source of the loop: quitting a loop that does not run yet would be forgotten.
        const Owned<GSource> quit(g_idle_source_new());
        g_source_set_callback(
            quit.get(),
            [](gpointer self) -> gboolean {
                g_main_loop_quit(static_cast<GMainLoop*>(self));
                return G_SOURCE_REMOVE;
            },
            loop.get(), nullptr);
        g_source_attach(quit.get(), context.get());
    }

private:
    void run() {
        g_main_context_push_thread_default(context.get()); // where signals are heard
        listen();
        g_main_context_pop_thread_default(context.get());
    }

    void listen() {
        const auto connection = connect(patience);
        guint subscription = 0;
        if (connection) {
            // Ahead of the question, so that no change falls in between.
            subscription = g_dbus_connection_signal_subscribe(
                connection.get(), Portal::name, Portal::settings, "SettingChanged", Portal::path, nullptr,
                G_DBUS_SIGNAL_FLAGS_NONE, hearPortal, this, nullptr);
            readPortal(settings, connection.get(), patience, cancellable.get());
        }
        // Without a bus GNOME does not run, and its settings would complain of that.
        const auto gnome =
            connection && !settings.portalReduces && !settings.gnomeAnimates ? gnomeSettings() : nullptr;
        if (gnome) {
            g_signal_connect(gnome.get(), "changed::enable-animations", G_CALLBACK(hearGNOME), this);
            settings.gnomeAnimates = animates(gnome.get());
        }
        if (!settings.kdeAnimates)
            settings.kdeAnimates = readKDEGlobals(file);
        report(settings.isReduced());
        if (!connection)
            return; // nobody to listen to
        g_main_loop_run(loop.get());
        g_dbus_connection_signal_unsubscribe(connection.get(), subscription);
    }

    static void hearPortal(GDBusConnection*, const char*, const char*, const char*, const char*,
                           GVariant* arguments, gpointer self) {
        if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)")))
            return;
        const char* space = nullptr;
        const char* key = nullptr;
        GVariant* value = nullptr;
        g_variant_get(arguments, "(&s&sv)", &space, &key, &value);
        const Owned<GVariant> owned(value);
        auto& listener = *static_cast<Listener*>(self);
        take(listener.settings, space, key, value);
        listener.report(listener.settings.isReduced());
    }

    static void hearGNOME(GSettings* gnome, const char*, gpointer self) {
        auto& listener = *static_cast<Listener*>(self);
        listener.settings.gnomeAnimates = animates(gnome);
        listener.report(listener.settings.isReduced());
    }

    const std::filesystem::path file;
    const std::chrono::milliseconds patience;
    const Report report;
    const Owned<GCancellable> cancellable{g_cancellable_new()};
    const Owned<GMainContext> context{g_main_context_new()};
    const Owned<GMainLoop> loop{g_main_loop_new(context.get(), FALSE)};
    Settings settings;
    const std::jthread thread; // last, since it uses all of the above
};

DesktopMotion::DesktopMotion(MainThread& mainThread, const std::filesystem::path& config,
                             std::chrono::milliseconds patience)
    : answer(std::make_shared<Answer>()),
      listener(std::make_unique<Listener>(
          config / "kdeglobals", patience, [&mainThread, watched = std::weak_ptr(answer)](bool isReduced) {
              mainThread.post([watched, isReduced] {
                  const auto present = watched.lock();
                  if (!present || std::exchange(present->isReduced, isReduced) == isReduced)
                      return;
                  if (present->changed)
                      present->changed(isReduced);
              });
          })) {}

DesktopMotion::~DesktopMotion() = default;

bool DesktopMotion::isReduced() const {
    return answer->isReduced;
}

void DesktopMotion::onChange(Changed changed) {
    answer->changed = std::move(changed);
}

} // namespace quorl
