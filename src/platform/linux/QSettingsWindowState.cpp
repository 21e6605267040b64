#include "platform/linux/QSettingsWindowState.h"

#include "platform/linux/XDGDirectories.h"

#include <QSettings>
#include <QStringList>
#include <QVariant>

namespace quorl {

namespace {

constexpr const char* frameKey = "frame";
constexpr const char* dividerKey = "divider";

// Coordinates of X11 have 16 bits, and no screen comes near that.
constexpr int limit = 32767;

std::optional<int> numberBetween(int least, const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= least && number <= limit ? std::optional(number) : std::nullopt;
}

// A list, which is what a text with commas reads as, is no text.
QString textAt(const QSettings& settings, const char* key) {
    const auto value = settings.value(QLatin1StringView(key));
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

} // namespace

QSettingsWindowState::QSettingsWindowState(const std::filesystem::path& file) {
    makePrivateFolder(file.parent_path());
    settings = std::make_unique<QSettings>(QString::fromStdString(file.string()), QSettings::IniFormat);
}

QSettingsWindowState::~QSettingsWindowState() = default;

std::optional<WindowFrame> QSettingsWindowState::frame() const {
    const auto parts = textAt(*settings, frameKey).split(u' ');
    if (parts.size() != 4)
        return std::nullopt;
    const auto x = numberBetween(-limit, parts[0]);
    const auto y = numberBetween(-limit, parts[1]);
    const auto width = numberBetween(1, parts[2]);
    const auto height = numberBetween(1, parts[3]);
    if (!x || !y || !width || !height)
        return std::nullopt;
    return WindowFrame{*x, *y, *width, *height};
}

std::optional<int> QSettingsWindowState::divider() const {
    return numberBetween(1, textAt(*settings, dividerKey));
}

void QSettingsWindowState::setFrame(const WindowFrame& frame) {
    settings->setValue(
        QLatin1StringView(frameKey),
        QStringLiteral("%1 %2 %3 %4").arg(frame.x).arg(frame.y).arg(frame.width).arg(frame.height));
}

void QSettingsWindowState::setDivider(int width) {
    // As text, which is what it is read back as.
    settings->setValue(QLatin1StringView(dividerKey), QString::number(width));
}

} // namespace quorl
