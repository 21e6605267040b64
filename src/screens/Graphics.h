#pragma once

#include <filesystem>

namespace quorl {

/// Whether the machine has something better than a software OpenGL, as far as a look into `devices` can tell.
[[nodiscard]] bool hasGraphicsDevice(const std::filesystem::path& devices);

/// Without a graphics device Qt's own software renderer draws faster, and starts faster, than OpenGL in
/// software does. Chooses it then, unless the environment has chosen. Call it before the application is made.
void chooseRenderer();

} // namespace quorl
