#include "base/Text.h"

#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <memory>
#include <utility>

namespace quorl::Text {

namespace {

std::int32_t lengthOf(std::string_view text) {
    // ICU counts in 32 bits; no text of ours comes near that, since replies are capped far below it.
    assert(text.size() <= INT32_MAX);
    return static_cast<std::int32_t>(text.size());
}

// Reads the code point at `offset` and moves past it.
UChar32 nextCodePoint(std::string_view text, std::int32_t& offset) {
    UChar32 code = 0;
    U8_NEXT_OR_FFFD(reinterpret_cast<const std::uint8_t*>(text.data()), offset, lengthOf(text), code);
    return code;
}

UChar32 previousCodePoint(std::string_view text, std::int32_t& offset) {
    UChar32 code = 0;
    U8_PREV_OR_FFFD(reinterpret_cast<const std::uint8_t*>(text.data()), 0, offset, code);
    return code;
}

CharacterClass classOf(UChar32 code) {
    if (u_isUWhiteSpace(code))
        return CharacterClass::whiteSpace;
    // Numbers first: Roman numerals are alphabetic too.
    if ((U_GET_GC_MASK(code) & U_GC_N_MASK) != 0)
        return CharacterClass::number;
    if (u_hasBinaryProperty(code, UCHAR_ALPHABETIC) || (U_GET_GC_MASK(code) & U_GC_L_MASK) != 0)
        return CharacterClass::letter;
    return CharacterClass::other;
}

// Walks the character boundaries of `text`; `visit` takes (start, end) and answers whether to go on.
template <class Visit>
void walkCharacters(std::string_view text, Visit visit) {
    UErrorCode status = U_ZERO_ERROR;
    // Making an iterator reads ICU's rules; one per thread is kept. It is taken out while in use, since
    // `visit` may walk too.
    thread_local std::unique_ptr<icu::BreakIterator> kept;
    auto characters = std::move(kept);
    if (!characters)
        characters.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    assert(characters);
    UText* source = utext_openUTF8(nullptr, text.data(), lengthOf(text), &status);
    assert(U_SUCCESS(status));
    characters->setText(source, status);
    std::int32_t start = characters->first();
    for (std::int32_t end = characters->next(); end != icu::BreakIterator::DONE; end = characters->next()) {
        if (!visit(static_cast<std::size_t>(start), static_cast<std::size_t>(end)))
            break;
        start = end;
    }
    utext_close(source);
    kept = std::move(characters);
}

// What most texts are.
bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) == 0; });
}

std::string lowercasedASCII(std::string_view text) {
    std::string result(text);
    for (char& byte : result)
        byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
    return result;
}

icu::UnicodeString unicodeOf(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), lengthOf(text)));
}

// The dotted and the dotless i are two letters there, and neither is the other's capital.
bool hasTurkishCase(const icu::Locale& locale) {
    const std::string_view language = locale.getLanguage();
    return language == "tr" || language == "az";
}

// The C library's own locale orders by bytes, capitals first, which is no order for a person to read: its
// place takes the one that Unicode gives to every language.
icu::Locale localeOfOrder(const icu::Locale& locale) {
    return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

// The user's locale's order, made once per thread and locale.
const icu::Collator& collator() {
    struct Kept {
        icu::Locale locale = icu::Locale::getDefault();
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> order{icu::Collator::createInstance(localeOfOrder(locale), status)};
    };
    thread_local auto kept = std::make_unique<Kept>();
    if (kept->locale != icu::Locale::getDefault())
        kept = std::make_unique<Kept>();
    assert(kept->order);
    kept->order->setStrength(icu::Collator::SECONDARY);
    return *kept->order;
}

} // namespace

bool isUTF8(std::string_view bytes) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    std::size_t offset = 0;
    while (offset < bytes.size()) {
        // Plain ASCII, which most of every reply is, needs no decoding.
        if (data[offset] < 0x80) {
            ++offset;
            continue;
        }
        UChar32 code = 0;
        U8_NEXT(data, offset, bytes.size(), code);
        if (code < 0)
            return false;
    }
    return true;
}

std::string_view trimmed(std::string_view text) {
    std::int32_t start = 0;
    while (start < lengthOf(text)) {
        std::int32_t next = start;
        if (!u_isUWhiteSpace(nextCodePoint(text, next)))
            break;
        start = next;
    }
    std::int32_t end = lengthOf(text);
    while (end > start) {
        std::int32_t previous = end;
        if (!u_isUWhiteSpace(previousCodePoint(text, previous)))
            break;
        end = previous;
    }
    return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

bool isBlank(std::string_view text) {
    return trimmed(text).empty();
}

std::string lowercased(std::string_view text) {
    if (isASCII(text))
        return lowercasedASCII(text);
    std::string result;
    unicodeOf(text).toLower(icu::Locale::getRoot()).toUTF8String(result);
    return result;
}

std::string capitalized(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    // Making one reads ICU's rules; a thread needs it once.
    thread_local const std::unique_ptr<icu::BreakIterator> words(
        icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
    assert(words);
    std::string result;
    unicodeOf(text).toTitle(words.get(), icu::Locale::getRoot()).toUTF8String(result);
    return result;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    if (text.size() <= count)
        return text;
    std::size_t taken = 0;
    std::size_t length = 0;
    if (count > 0) {
        walkCharacters(text, [&](std::size_t, std::size_t end) {
            length = end;
            return ++taken < count;
        });
    }
    return text.substr(0, length);
}

std::string folded(std::string_view text) {
    const bool isTurkish = hasTurkishCase(icu::Locale::getDefault());
    // Searching folds every text of the library with every key press.
    if (!isTurkish && isASCII(text))
        return lowercasedASCII(text);
    std::string result;
    UErrorCode status = U_ZERO_ERROR;
    // Composed before, for the Turkish capital with its dot, and after, so that no letter is found in its
    // accented form.
    const auto& composer = *icu::Normalizer2::getNFCInstance(status);
    auto unicode = composer.normalize(unicodeOf(text), status);
    unicode.foldCase(isTurkish ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    composer.normalize(unicode, status).toUTF8String(result);
    assert(U_SUCCESS(status));
    return result;
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    return left == right || folded(left) == folded(right);
}

bool precedesIgnoringCase(std::string_view left, std::string_view right) {
    UErrorCode status = U_ZERO_ERROR;
    return collator().compareUTF8(icu::StringPiece(left.data(), lengthOf(left)),
                                  icu::StringPiece(right.data(), lengthOf(right)), status) == UCOL_LESS;
}

void forEachCharacter(std::string_view text,
                      const std::function<void(std::string_view character, CharacterClass)>& visit) {
    // Of ASCII, only a carriage return and a line feed make one character of two.
    if (isASCII(text) && text.find('\r') == std::string_view::npos) {
        for (std::size_t place = 0; place < text.size(); ++place)
            visit(text.substr(place, 1), classOf(text[place]));
        return;
    }
    walkCharacters(text, [&](std::size_t start, std::size_t end) {
        auto offset = static_cast<std::int32_t>(start);
        visit(text.substr(start, end - start), classOf(nextCodePoint(text, offset)));
        return true;
    });
}

std::string_view withoutTrailing(std::string_view text, char end) {
    const auto last = text.find_last_not_of(end);
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

} // namespace quorl::Text
