#include "screens/WindowPlacement.h"

#include <algorithm>

namespace quorl::WindowPlacement {

namespace {

constexpr int tolerance = 20; // by which a window may be larger than the frame
constexpr int margin = 48;    // that a window leaves of the frame, both sides together

bool intersects(const WindowFrame& left, const WindowFrame& right) {
    return left.x < right.x + right.width && right.x < left.x + left.width &&
           left.y < right.y + right.height && right.y < left.y + left.height;
}

} // namespace

std::optional<WindowFrame> repaired(const WindowFrame& window, const WindowFrame& visible) {
    if (intersects(window, visible) && window.height <= visible.height + tolerance &&
        window.width <= visible.width + tolerance)
        return std::nullopt;
    const int width = std::min(defaultWidth, visible.width - margin);
    const int height = std::min(defaultHeight, visible.height - margin);
    return WindowFrame{visible.x + (visible.width - width) / 2, visible.y + (visible.height - height) / 2,
                       width, height};
}

} // namespace quorl::WindowPlacement
