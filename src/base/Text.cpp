#include "base/Text.h"

#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <cassert>
#include <cstdint>
#include <memory>

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
    // Making an iterator reads ICU's rules; one per thread is made once.
    thread_local const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    assert(characters);
    status = U_ZERO_ERROR;
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
    std::string result;
    icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), lengthOf(text)))
        .toLower(icu::Locale::getRoot())
        .toUTF8String(result);
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

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    if (left == right)
        return true;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(status));
    assert(collator);
    // Secondary strength: accents tell names apart, case does not.
    collator->setStrength(icu::Collator::SECONDARY);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    return collator->compareUTF8(icu::StringPiece(left.data(), lengthOf(left)),
                                 icu::StringPiece(right.data(), lengthOf(right)), status) == UCOL_EQUAL;
}

void forEachCharacter(std::string_view text,
                      const std::function<void(std::string_view character, CharacterClass)>& visit) {
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
