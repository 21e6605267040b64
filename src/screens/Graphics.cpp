#include "screens/Graphics.h"

#include <QQuickWindow>
#include <QtGlobal>

#include <algorithm>
#include <string>
#include <system_error>

namespace quorl {

bool hasGraphicsDevice(const std::filesystem::path& devices) {
    std::error_code failure;
    // One vendor's driver draws without the kernel's own render nodes.
    if (std::filesystem::exists(devices / "nvidiactl", failure))
        return true;
    std::filesystem::directory_iterator entries(devices / "dri", failure);
    return std::any_of(begin(entries), end(entries), [](const std::filesystem::directory_entry& entry) {
        return entry.path().filename().string().starts_with("renderD");
    });
}

void chooseRenderer() {
    if (qEnvironmentVariableIsSet("QSG_RHI_BACKEND") || qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        return;
    if (!hasGraphicsDevice("/dev"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace quorl
