#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What is asked of a desktop. platform/linux realises it; tests have fakes of exactly these.
namespace quorl {

// The thread that owns the model and the window.
class MainThread {
public:
    virtual ~MainThread() = default;

    /// Runs `work` on the main thread, after what was posted before it, never inside this call. Thread: any.
    virtual void post(std::function<void()> work) = 0;

    /// The same after `delay`. Thread: main.
    virtual void postAfter(std::chrono::milliseconds delay, std::function<void()> work) = 0;
};

class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds since 1970 with their fraction, as a `Date` counts them. Thread: any.
    [[nodiscard]] virtual std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>
    now() const = 0;
};

// The per-user store of small settings. Keys are plain text such as "draft.kind". Thread: main. Failures:
// unseen; what cannot be written is gone at the next start.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual bool contains(std::string_view key) const = 0;

    /// Nothing where the key is absent or holds no text.
    [[nodiscard]] virtual std::optional<std::string> string(std::string_view key) const = 0;

    /// False where the key is absent or holds no boolean.
    [[nodiscard]] virtual bool boolean(std::string_view key) const = 0;

    /// Nothing where the key is absent or holds no bytes.
    [[nodiscard]] virtual std::optional<std::string> bytes(std::string_view key) const = 0;

    /// Nothing where the key is absent or holds no list of texts.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> strings(std::string_view key) const = 0;

    virtual void setString(std::string_view key, const std::string& value) = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void setBytes(std::string_view key, const std::string& value) = 0;
    virtual void setStrings(std::string_view key, const std::vector<std::string>& value) = 0;
};

// An at-rest store of small byte strings, readable once the user's session is unlocked. Thread: any.
class Keychain {
public:
    virtual ~Keychain() = default;

    /// The bytes of one item; nothing where there is none, or where the keychain is locked, refused or
    /// broken.
    [[nodiscard]] virtual std::optional<std::string> copy(const std::string& service,
                                                          const std::string& account) = 0;

    /// Failures are unseen.
    virtual void add(const std::string& service, const std::string& account, const std::string& bytes) = 0;
    virtual void remove(const std::string& service, const std::string& account) = 0;
};

// What a file is, for the desktop's dialogs.
struct FileType {
    std::string name;      // as a person reads it
    std::string extension; // without its dot
};

// Asks the user where a file goes. It belongs to a window, so that it is given to the operation that saves.
// Thread: main.
class FileSaver {
public:
    using Chosen = std::function<void(const std::optional<std::filesystem::path>& target)>;

    virtual ~FileSaver() = default;

    /// Opens the desktop's save dialog, which proposes `name` and takes files of `type` alone, and returns at
    /// once. `chosen` is called on the main thread, once, with nothing where the user cancels; never where
    /// the program ends first.
    virtual void chooseTarget(const std::string& name, const FileType& type, Chosen chosen) = 0;
};

// What the user copies texts to. Thread: main.
class Clipboard {
public:
    virtual ~Clipboard() = default;

    /// `text` takes the place of what is there, whatever its kind.
    virtual void replace(const std::string& text) = 0;
};

// Whether the desktop asks for less motion. Thread: main.
class MotionSetting {
public:
    using Changed = std::function<void(bool isReduced)>;

    virtual ~MotionSetting() = default;

    /// False until the desktop has answered, and where it has no such setting.
    [[nodiscard]] virtual bool isReduced() const = 0;

    /// From now on `changed` is called with every new answer, in place of whoever was called before.
    virtual void onChange(Changed changed) = 0;
};

// A rectangle of the desktop, in the device-independent pixels of its screens; y grows downwards.
struct WindowFrame {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const WindowFrame&) const = default;
};

// How the user has left the window. Thread: main. Failures: unseen; what cannot be written is gone at the
// next start, and what is damaged counts as absent.
class WindowState {
public:
    virtual ~WindowState() = default;

    [[nodiscard]] virtual std::optional<WindowFrame> frame() const = 0;

    /// The width of what stands in front of the divider.
    [[nodiscard]] virtual std::optional<int> divider() const = 0;

    virtual void setFrame(const WindowFrame& frame) = 0;
    virtual void setDivider(int width) = 0;
};

// The services that the model is given. Borrowed: whoever composes the program keeps them alive.
struct Platform {
    MainThread& mainThread;
    Clock& clock;
    UserDefaults& defaults;
    Keychain& keychain;
    std::filesystem::path applicationSupport; // the user's folder for programs' data, without ours in it
};

} // namespace quorl
