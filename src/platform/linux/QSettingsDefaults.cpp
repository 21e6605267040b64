#include "platform/linux/QSettingsDefaults.h"

#include "platform/linux/XDGDirectories.h"

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <fcntl.h>
#include <unistd.h>

namespace quorl {

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// QSettings keeps the mode of a file that is there, and would make a new one readable to everyone.
const std::filesystem::path& madePrivate(const std::filesystem::path& file) {
    makePrivateFolder(file.parent_path());
    if (const int made = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); made >= 0)
        close(made);
    return file;
}

// A value that has not changed would cost a rewrite of the file; the draft is saved with every key press.
void set(QSettings& settings, std::string_view key, const QVariant& value) {
    const auto name = textOf(key);
    if (!settings.contains(name) || settings.value(name) != value)
        settings.setValue(name, value);
}

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

} // namespace

QSettingsDefaults::QSettingsDefaults(const std::filesystem::path& file)
    : settings(std::make_unique<QSettings>(textOf(madePrivate(file).native()), QSettings::IniFormat)) {}

QSettingsDefaults::~QSettingsDefaults() = default;

bool QSettingsDefaults::contains(std::string_view key) const {
    return settings->contains(textOf(key));
}

std::optional<std::string> QSettingsDefaults::string(std::string_view key) const {
    const auto value = settings->value(textOf(key));
    return isText(value) ? std::optional(value.toString().toStdString()) : std::nullopt;
}

bool QSettingsDefaults::boolean(std::string_view key) const {
    const auto value = settings->value(textOf(key));
    return isText(value) && value.toString() == u"true";
}

std::optional<std::string> QSettingsDefaults::bytes(std::string_view key) const {
    const auto value = settings->value(textOf(key));
    return value.typeId() == QMetaType::QByteArray ? std::optional(value.toByteArray().toStdString())
                                                   : std::nullopt;
}

std::optional<std::vector<std::string>> QSettingsDefaults::strings(std::string_view key) const {
    const auto value = settings->value(textOf(key));
    // The empty list's form in the file reads back as no value at all.
    const bool isEmptyList = contains(key) && !value.isValid();
    if (!isEmptyList && !isText(value) && value.typeId() != QMetaType::QStringList)
        return std::nullopt;
    std::vector<std::string> texts;
    for (const auto& text : value.toStringList())
        texts.push_back(text.toStdString());
    return texts;
}

void QSettingsDefaults::setString(std::string_view key, const std::string& value) {
    set(*settings, key, textOf(value));
}

// As text, which is what it is read back as, so that nothing changes with the next start.
void QSettingsDefaults::setBoolean(std::string_view key, bool value) {
    set(*settings, key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

void QSettingsDefaults::setBytes(std::string_view key, const std::string& value) {
    set(*settings, key, QByteArray::fromStdString(value));
}

void QSettingsDefaults::setStrings(std::string_view key, const std::vector<std::string>& value) {
    if (value.size() == 1)
        return setString(key, value.front());
    QStringList list;
    for (const auto& text : value)
        list.append(textOf(text));
    set(*settings, key, value.empty() ? QVariant() : QVariant(list));
}

} // namespace quorl
