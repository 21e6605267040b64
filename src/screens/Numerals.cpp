#include "screens/Numerals.h"

#include <QFont>
#include <QLocale>
#include <QRawFont>

#include <cmath>
#include <limits>

namespace quorl {

namespace {

constexpr char16_t firstTabularDigit = 0xE071; // of Inter's private use, 0 to 9

bool hasTabularDigits() {
    static const bool does =
        QRawFont::fromFont(QFont(QStringLiteral("Inter"))).supportsCharacter(firstTabularDigit);
    return does;
}

} // namespace

QString Numerals::text(double number) {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(number, 'f', QLocale::FloatingPointShortest);
}

double Numerals::number(const QString& text, bool isWhole) {
    bool isRead = false;
    const QLocale locale;
    const QString trimmed = text.trimmed();
    const double number =
        isWhole ? double(locale.toLongLong(trimmed, &isRead)) : locale.toDouble(trimmed, &isRead);
    return isRead && std::isfinite(number) ? number : std::numeric_limits<double>::quiet_NaN();
}

QString Numerals::tabular(const QString& text) {
    if (!hasTabularDigits())
        return text;
    QString drawn = text;
    for (QChar& letter : drawn) {
        if (letter >= u'0' && letter <= u'9')
            letter = QChar(firstTabularDigit + (letter.unicode() - u'0'));
    }
    return drawn;
}

} // namespace quorl
