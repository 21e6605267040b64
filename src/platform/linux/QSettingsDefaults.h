#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <memory>

class QSettings;

namespace quorl {

// The user's settings in one INI file, section General. What is set is on disk once the event loop has
// turned, or when the object goes. The file and its folder are the user's alone, for the token of the local
// API is among the settings. Thread: main.
//
// INI knows fewer types than its callers: a boolean stands as the text "true" or "false", and a list of one
// text as that text, so these read as text as well, and a text reads as a list of one.
class QSettingsDefaults : public UserDefaults {
public:
    explicit QSettingsDefaults(const std::filesystem::path& file);
    ~QSettingsDefaults() override;

    [[nodiscard]] bool contains(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override;
    [[nodiscard]] bool boolean(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> bytes(std::string_view key) const override;
    [[nodiscard]] std::optional<std::vector<std::string>> strings(std::string_view key) const override;

    void setString(std::string_view key, const std::string& value) override;
    void setBoolean(std::string_view key, bool value) override;
    void setBytes(std::string_view key, const std::string& value) override;
    void setStrings(std::string_view key, const std::vector<std::string>& value) override;

private:
    std::unique_ptr<QSettings> settings;
};

} // namespace quorl
