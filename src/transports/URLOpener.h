#pragma once

#include <functional>
#include <string>

namespace quorl {

/// Shows a URL in the user's browser; returns at once, failures unseen.
using URLOpener = std::function<void(const std::string& url)>;

/// The desktop's own way, xdg-open: started and not waited for. Thread: any.
void openURL(const std::string& url);

} // namespace quorl
