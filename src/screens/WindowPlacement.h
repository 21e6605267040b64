#pragma once

#include "platform/Platform.h"

#include <optional>

namespace quorl::WindowPlacement {

inline constexpr int defaultWidth = 1240;
inline constexpr int defaultHeight = 800;
inline constexpr int minimumWidth = 375;
inline constexpr int minimumHeight = 420;

/// What counts as the visible frame where there is no screen to ask.
inline constexpr WindowFrame frameWithoutScreen{0, 0, 1440, 900};

/// Where a window belongs that would be out of sight, or too big, in the visible frame of its screen: one
/// that was left on a screen that is no longer there. Nothing for a window that may stay. Thread: any.
[[nodiscard]] std::optional<WindowFrame> repaired(const WindowFrame& window, const WindowFrame& visible);

} // namespace quorl::WindowPlacement
