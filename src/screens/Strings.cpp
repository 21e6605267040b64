#include "screens/Strings.h"

#include "base/Text.h"

namespace quorl {

QString asEdited(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar& character : text) {
        switch (character.unicode()) {
        case '\r':
        case 0x2028: // line separator
        case 0x2029: // paragraph separator
        case 0xFDD0: // where a document keeps the start and the end of a frame
        case 0xFDD1:
            character = QLatin1Char('\n');
            break;
        case 0x00A0:
            character = QLatin1Char(' ');
            break;
        }
    }
    return text;
}

QString startOf(std::string_view text, std::size_t characters) {
    return toQString(Text::firstCharacters(Text::trimmed(text), characters)).simplified();
}

} // namespace quorl
