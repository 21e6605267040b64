#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <memory>

class QSettings;

namespace quorl {

// The window's state in one INI file, section General, under the keys "frame" (x, y, width and height with a
// blank between) and "divider". On disk once the event loop has turned, or when the object goes.
class QSettingsWindowState : public WindowState {
public:
    explicit QSettingsWindowState(const std::filesystem::path& file);
    ~QSettingsWindowState() override;

    [[nodiscard]] std::optional<WindowFrame> frame() const override;
    [[nodiscard]] std::optional<int> divider() const override;
    void setFrame(const WindowFrame& frame) override;
    void setDivider(int width) override;

private:
    std::unique_ptr<QSettings> settings;
};

} // namespace quorl
