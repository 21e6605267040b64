#include "platform/linux/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace quorl {

void QtClipboard::replace(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace quorl
